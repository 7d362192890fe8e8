"""Layered ground: its response, and curves as resistivity over depth."""

from __future__ import annotations

from typing import NamedTuple

import numpy as np
from numpy.typing import ArrayLike

from . import _brenlox
from ._arrays import real


class LayeredResponse(NamedTuple):
    """Response of layered ground; arrays of shape (n,).

    Attributes
    ----------
    frequency : ndarray
        Hz.
    impedance : ndarray of complex
        mV/km/nT, of time dependence exp(+i omega t).
    resistivity : ndarray
        Apparent resistivity, ohm-m.
    phase : ndarray
        Degrees, 45 over a half-space.
    """

    frequency: np.ndarray
    impedance: np.ndarray
    resistivity: np.ndarray
    phase: np.ndarray


def layered_response(resistivity: ArrayLike, thickness: ArrayLike, frequency: ArrayLike) -> LayeredResponse:
    """The magnetotelluric response of horizontal layers.

    Parameters
    ----------
    resistivity : array_like, shape (m,)
        ohm-m, from the top layer down; the last one has no bottom.
    thickness : array_like, shape (m - 1,)
        m, of all layers but the last; empty for a half-space.
    frequency : array_like, shape (n,)
        Hz.

    Raises
    ------
    ValueError
        For other shapes, and for a number that isn't finite and above 0, with its place.

    Notes
    -----
    Cagniard (1953), Geophysics 18, 605-635; Wait (1954), Geophysics 19, 281-289.
    """
    frequency = real("frequency", frequency)
    impedance = _brenlox.layered_impedance(real("resistivity", resistivity), real("thickness", thickness), frequency)
    apparent = 0.2 * np.abs(impedance) ** 2 / frequency
    return LayeredResponse(frequency, impedance, apparent, np.degrees(np.angle(impedance)))


class BostickCurve(NamedTuple):
    """Resistivity over depth; arrays of shape (n,), in the order of the frequencies.

    Attributes
    ----------
    depth, depth_error : ndarray
        m.
    resistivity, resistivity_error : ndarray
        ohm-m; NaN where the phase isn't between 0 and 90 degrees.
    """

    depth: np.ndarray
    depth_error: np.ndarray
    resistivity: np.ndarray
    resistivity_error: np.ndarray


def niblett_bostick(
    frequency: ArrayLike,
    resistivity: ArrayLike,
    phase: ArrayLike,
    resistivity_error: ArrayLike | None = None,
    phase_error: ArrayLike | None = None,
) -> BostickCurve:
    """A sounding curve as resistivity at depth, by the transformation of Niblett and Bostick with the phase.

    Parameters
    ----------
    frequency : array_like, shape (n,)
        Hz.
    resistivity, resistivity_error : array_like, shape (n,)
        Apparent resistivity, ohm-m.
    phase, phase_error : array_like, shape (n,)
        Degrees, 45 over a half-space; those of Zyx (near -135) have 180 to be added.

    Raises
    ------
    ValueError
        For other shapes.

    Notes
    -----
    depth = sqrt(rho / (mu0 omega)), resistivity = rho (pi / (2 phi) - 1): Bostick (1977); Jones (1983),
    J. Geophys. 53, 72-73; Weidelt et al. (1980). A row with a frequency or resistivity that isn't above 0
    gives NaN.
    """
    frequency = real("frequency", frequency)
    unknown = np.full(frequency.shape, np.nan)
    return BostickCurve(**_brenlox.niblett_bostick(
        frequency,
        real("resistivity", resistivity),
        real("phase", phase),
        unknown if resistivity_error is None else real("resistivity_error", resistivity_error),
        unknown if phase_error is None else real("phase_error", phase_error)))
