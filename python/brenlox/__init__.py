"""Magnetotelluric surveys and the numerics of this field.

Conventions throughout: frequency Hz; apparent resistivity ohm-m; phase degrees, of time dependence
exp(+i omega t); impedance mV/km/nT; x north, y east, z down; angles degrees clockwise from north; lengths m.
Errors are one standard deviation. A value that isn't there is NaN.
"""

from __future__ import annotations

import os

from . import section
from ._brenlox import Error, __version__
from ._earth import BostickCurve, LayeredResponse, layered_response, niblett_bostick
from ._rhoplus import RhoplusFit, rhoplus
from ._strike import Strike, strike, strike_by_decade
from .survey import Curve, Survey
from .tensors import InductionArrows, PhaseTensor, Tensor, Tipper

__all__ = [
    "BostickCurve",
    "Curve",
    "Error",
    "InductionArrows",
    "LayeredResponse",
    "PhaseTensor",
    "RhoplusFit",
    "Strike",
    "Survey",
    "Tensor",
    "Tipper",
    "__version__",
    "layered_response",
    "niblett_bostick",
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
        Work on a private copy: nothing is written beside the survey, which may be open elsewhere.

    Raises
    ------
    FileNotFoundError
    brenlox.Error
        If the survey is open in another window or program, or another one in this process, or isn't one.
    """
    return Survey(path, read_only)
