"""Magnetotelluric surveys and the numerics of this field.

Conventions throughout: frequency Hz; apparent resistivity ohm-m; phase degrees, of time dependence
exp(+i omega t); impedance mV/km/nT; x north, y east, z down; angles degrees clockwise from north; lengths m.
Errors are one standard deviation. A value that isn't there is NaN.
"""

from . import section
from ._rhoplus import RhoplusFit, rhoplus
from .tensors import PhaseTensor, Tensor, Tipper

__all__ = ["PhaseTensor", "RhoplusFit", "Tensor", "Tipper", "rhoplus", "section"]
