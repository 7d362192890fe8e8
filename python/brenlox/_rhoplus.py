"""Rho+: the best fit that any layered ground allows."""

from __future__ import annotations

from dataclasses import dataclass

import numpy as np
from numpy.typing import ArrayLike

from . import _brenlox
from ._arrays import real


@dataclass(frozen=True)
class RhoplusFit:
    """The one-dimensional model that fits a curve best, and the proof that none fits better.

    Attributes
    ----------
    used_values : int
        Resistivities and phases that were fitted.
    chi_squared : float
        Sum of the squared residuals in units of their errors.
    expected_chi, chi_of_95_percent : float
        Length that as many normal errors of unit variance have in the mean, and exceed once in twenty times.
    certificate_gap : float
        `chi_squared` exceeds the least possible by no more than this.
    limit_met : bool
        The search has ended at a limit of work; the gap may be wide.
    level_is_arbitrary : bool
        Only phases were given, which say nothing about the level of the resistivity.
    sheets : ndarray, shape (m, 2)
        Depth (m) and conductance (S) of the thin sheets of the model, from the top down.
    conductor_depth : float
        Of the perfect conductor below the sheets, m; infinite where there is none.
    resistivity, phase : ndarray, shape (n,)
        Response of the model, ohm-m and degrees.
    resistivity_residual, phase_residual : ndarray, shape (n,)
        ln(model / observed) over the relative error, and (model - observed) over the error; NaN where the
        value wasn't used.
    remarks : list of str
        What could not be used, and why.
    """

    used_values: int
    chi_squared: float
    expected_chi: float
    chi_of_95_percent: float
    certificate_gap: float
    limit_met: bool
    level_is_arbitrary: bool
    sheets: np.ndarray
    conductor_depth: float
    resistivity: np.ndarray
    phase: np.ndarray
    resistivity_residual: np.ndarray
    phase_residual: np.ndarray
    remarks: list[str]

    @property
    def chi(self) -> float:
        """Root of `chi_squared`."""
        return float(np.sqrt(self.chi_squared))

    def outliers(self, errors: float = 3.0) -> tuple[np.ndarray, np.ndarray]:
        """Which resistivities and phases are further from the best fit than so many of their errors.

        Parameters
        ----------
        errors : float

        Returns
        -------
        resistivity, phase : ndarray of bool, shape (n,)
            A residual that stands out among those of its neighbours says that the point is bad, many of them that
            the ground isn't layered. A fit without these points may have other ones.
        """
        return np.abs(self.resistivity_residual) > errors, np.abs(self.phase_residual) > errors

    @property
    def is_consistent(self) -> bool:
        """Whether the residuals are no larger than errors make them nineteen times out of twenty."""
        return self.chi <= self.chi_of_95_percent


def rhoplus(
    frequency: ArrayLike,
    resistivity: ArrayLike,
    phase: ArrayLike,
    resistivity_error: ArrayLike,
    phase_error: ArrayLike,
    *,
    surface: str = "insulating",
) -> RhoplusFit:
    """Fit apparent resistivity and phase of one station with any layered ground.

    The least chi-squared over all conductivity profiles of depth is reached by thin conducting sheets between
    insulating gaps. What such a model can't fit isn't one-dimensional, or its errors are too small.

    Parameters
    ----------
    frequency : array_like, shape (n,)
        Hz, in any order.
    resistivity, resistivity_error : array_like, shape (n,)
        ohm-m. A NaN in either leaves the value out.
    phase, phase_error : array_like, shape (n,)
        Degrees, 45 over a half-space. A NaN in either leaves the value out.
    surface : {'insulating', 'conducting'}
        Conducting: the first sheet lies at depth 0.

    Raises
    ------
    ValueError
        For arrays of other shapes, and where there is nothing to fit.
    KeyboardInterrupt
        Ctrl+C ends the search.

    Notes
    -----
    Parker (1980), J. Geophys. Res. 85, 4421-4428; Parker & Whaler (1981), J. Geophys. Res. 86, 9574-9584;
    Parker & Booker (1996), Phys. Earth Planet. Inter. 98, 269-282.
    """
    if surface not in ("insulating", "conducting"):
        raise ValueError(f"surface: expected 'insulating' or 'conducting', received {surface!r}")
    fit = _brenlox.rhoplus(
        real("frequency", frequency), real("resistivity", resistivity), real("phase", phase),
        real("resistivity_error", resistivity_error), real("phase_error", phase_error), surface == "conducting")
    return RhoplusFit(**fit)
