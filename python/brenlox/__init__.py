"""Magnetotelluric surveys and the numerics of this field.

Conventions throughout: frequency Hz; apparent resistivity ohm-m; phase degrees, of time dependence
exp(+i omega t); impedance mV/km/nT; x north, y east, z down; angles degrees clockwise from north; lengths m.
Errors are one standard deviation. A value that isn't there is NaN.
"""

from . import section
from ._brenlox import Error
from ._rhoplus import RhoplusFit, rhoplus
from .survey import Change, Curve, Station, Survey
from .tensors import PhaseTensor, Tensor, Tipper

__all__ = [
    "Change",
    "Curve",
    "Error",
    "PhaseTensor",
    "RhoplusFit",
    "Station",
    "Survey",
    "Tensor",
    "Tipper",
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
        Work on a private copy of the survey as it is in its file: nothing is written beside it, and it may be
        open in a window or another program. Edits are refused.

    Raises
    ------
    FileNotFoundError
    brenlox.Error
        If the survey is open in another window or program, or another one in this process, or isn't one.
    """
    return Survey(path, read_only)
