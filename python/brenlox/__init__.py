"""Magnetotelluric surveys and the numerics of this field.

Conventions throughout: frequency Hz; apparent resistivity ohm-m; phase degrees, of time dependence
exp(+i omega t); impedance mV/km/nT; x north, y east, z down; angles degrees clockwise from north; lengths m.
Errors are one standard deviation. A value that isn't there is NaN.
"""

from __future__ import annotations

import os

from . import occam, section
from ._brenlox import Error, __version__
from ._earth import BostickCurve, LayeredResponse, layered_response, niblett_bostick
from ._rhoplus import RhoplusFit, rhoplus
from ._strike import Strike, strike, strike_by_decade
from .exporting import RhoplusSettings
from .survey import Change, Curve, Station, Survey, create_survey
from .tensors import InductionArrows, PhaseTensor, Tensor, Tipper

__all__ = [
    "BostickCurve",
    "Change",
    "Curve",
    "Error",
    "InductionArrows",
    "LayeredResponse",
    "PhaseTensor",
    "RhoplusFit",
    "RhoplusSettings",
    "Station",
    "Strike",
    "Survey",
    "Tensor",
    "Tipper",
    "__version__",
    "create",
    "layered_response",
    "niblett_bostick",
    "occam",
    "open",
    "rhoplus",
    "section",
    "strike",
    "strike_by_decade",
]


def open(path: str | os.PathLike[str], read_only: bool = False) -> Survey:
    """Open a survey.

    Parameters
    ----------
    path : path-like
    read_only : bool
        Work on a private copy of the survey as it is in its file: nothing is written beside it, and it may be
        open in a window or another program. Edits are refused.

    Raises
    ------
    FileNotFoundError
    brenlox.Error
        If the survey is open in another window or program, or another one in this process, or isn't one.
    """
    return Survey(path, read_only)


def create(path: str | os.PathLike[str]) -> Survey:
    """Create an empty survey and open it.

    Parameters
    ----------
    path : path-like
        Ends in .mdb; there must be no such file yet.

    Raises
    ------
    FileExistsError
    brenlox.Error
        If it can't be created, or a survey is open in this process.
    """
    return create_survey(path)
