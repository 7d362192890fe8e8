"""Magnetotelluric surveys and the numerics of this field.

Conventions throughout: frequency Hz; apparent resistivity ohm-m; phase degrees, of time dependence
exp(+i omega t); impedance mV/km/nT; x north, y east, z down; angles degrees clockwise from north; lengths m.
Errors are one standard deviation. A value that isn't there is NaN.
"""

from . import occam, section
from ._brenlox import Error
from ._rhoplus import RhoplusFit, rhoplus
from .exporting import RhoplusSettings
from .survey import Curve, Survey, create_survey
from .tensors import PhaseTensor, Tensor, Tipper

__all__ = [
    "Curve",
    "Error",
    "PhaseTensor",
    "RhoplusFit",
    "RhoplusSettings",
    "Survey",
    "Tensor",
    "Tipper",
    "create",
    "occam",
    "open",
    "rhoplus",
    "section",
]


def open(path, read_only: bool = False) -> Survey:
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


def create(path) -> Survey:
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
