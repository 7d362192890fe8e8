"""Impedance tensors and tippers of a station over its frequencies."""

from __future__ import annotations

from dataclasses import dataclass, field, fields, replace
from typing import TYPE_CHECKING, NamedTuple

import numpy as np
from numpy.typing import ArrayLike

from . import _brenlox
from ._arrays import check_shape, complex_numbers, real
from ._earth import BostickCurve, niblett_bostick

if TYPE_CHECKING:
    from matplotlib.axes import Axes


_EFFECTIVE = ("xy", "yx", "determinant", "mean", "sum_of_squares")


def _equal_parts(error: ArrayLike, shape: tuple[int, ...]) -> np.ndarray:
    """Covariances of elements whose real and imaginary parts have one error and are independent."""
    error = real("error", error)
    try:
        variance = np.broadcast_to(np.square(error), shape)
    except ValueError:
        raise ValueError(f"error: expected shape {shape}, received {error.shape}") from None
    return np.stack([variance, variance, np.zeros(shape)], axis=-1)


@dataclass(frozen=True, eq=False)
class PhaseTensor:
    """The phase tensor, which galvanic distortion of the electric field leaves alone.

    Each quantity is an array of shape (n,), with its standard error under the same name with ``_error``.
    Angles are degrees: ``alpha``, ``beta`` (the skew), ``azimuth`` of the major axis, ``phase_max``,
    ``phase_min`` and ``geometric_phase``. NaN where the real part of the tensor can't be inverted.

    Notes
    -----
    Caldwell, Bibby & Brown (2004), GJI 158, 457-469; Bibby, Caldwell & Brown (2005), GJI 163, 915-930.
    """

    frequency: np.ndarray
    xx: np.ndarray
    xx_error: np.ndarray
    xy: np.ndarray
    xy_error: np.ndarray
    yx: np.ndarray
    yx_error: np.ndarray
    yy: np.ndarray
    yy_error: np.ndarray
    alpha: np.ndarray
    alpha_error: np.ndarray
    beta: np.ndarray
    beta_error: np.ndarray
    azimuth: np.ndarray
    azimuth_error: np.ndarray
    phi_max: np.ndarray
    phi_max_error: np.ndarray
    phi_min: np.ndarray
    phi_min_error: np.ndarray
    phase_max: np.ndarray
    phase_max_error: np.ndarray
    phase_min: np.ndarray
    phase_min_error: np.ndarray
    ellipticity: np.ndarray
    ellipticity_error: np.ndarray
    determinant: np.ndarray
    determinant_error: np.ndarray
    geometric_phase: np.ndarray
    geometric_phase_error: np.ndarray

    @property
    def skew(self) -> np.ndarray:
        """``beta`` under its other name, degrees."""
        return self.beta

    def to_dict(self) -> dict[str, np.ndarray]:
        """All arrays by name, as a table takes them."""
        return {each.name: getattr(self, each.name) for each in fields(self)}


def _keep_arrays(owner: Tensor | Tipper, name: str, values: np.ndarray) -> None:
    """Puts frequency, values and covariance in place as arrays of shapes that fit."""
    frequency = real("frequency", owner.frequency)
    check_shape("frequency", frequency, values.shape[0])
    shape = values.shape + (3,)
    covariance = np.full(shape, np.nan) if owner.covariance is None else real("covariance", owner.covariance)
    check_shape("covariance", covariance, *shape)
    for key, array in (("frequency", frequency), (name, values), ("covariance", covariance)):
        object.__setattr__(owner, key, array)


@dataclass(frozen=True, eq=False)
class Tensor:
    """Impedance tensors of a station.

    Parameters
    ----------
    frequency : ndarray, shape (n,)
        Hz.
    z : ndarray of complex, shape (n, 2, 2)
        mV/km/nT, electric field by rows, magnetic field by columns.
    covariance : ndarray, shape (n, 2, 2, 3), optional
        Variance of the real part, of the imaginary part, and their covariance, of each element; NaN where
        nothing is known. Different elements count as independent.
    axes : float
        Azimuth of x, degrees clockwise from north.
    """

    frequency: np.ndarray
    z: np.ndarray
    covariance: np.ndarray | None = None
    axes: float = 0.0
    station: str = ""
    _quantities: dict = field(default_factory=dict, init=False, repr=False, compare=False)

    def __post_init__(self) -> None:
        z = complex_numbers("z", self.z)
        check_shape("z", z, None, 2, 2)
        _keep_arrays(self, "z", z)

    @classmethod
    def from_errors(cls, frequency: ArrayLike, z: ArrayLike, error: ArrayLike, **options) -> Tensor:
        """Tensors whose real and imaginary parts have one error and are independent.

        Parameters
        ----------
        frequency, z
            As of a `Tensor`.
        error : array_like, shape (n, 2, 2) or what is broadcast to it
            Standard error of each part, mV/km/nT: the root of half the variance of the complex element.
        **options
            `axes` and `station`.
        """
        z = complex_numbers("z", z)
        return cls(frequency, z, _equal_parts(error, z.shape), **options)

    def __len__(self) -> int:
        return len(self.frequency)

    def rotate(self, degrees: float) -> Tensor:
        """The tensors in axes turned clockwise by so many degrees."""
        z, covariance = _brenlox.rotated_tensors(self.z, self.covariance, degrees)
        return replace(self, z=z, covariance=covariance, axes=self.axes + degrees)

    def phase_tensor(self) -> PhaseTensor:
        """The phase tensors, in the axes of the impedances."""
        return PhaseTensor(self.frequency, **_brenlox.phase_tensors(self.z, self.covariance))

    def dimensionality(
        self, *, skew_limit: float = 3.0, least_ellipticity: float = 0.1, use_errors: bool = False
    ) -> np.ndarray:
        """Dimensions of the ground by phase tensors (Caldwell et al. 2004).

        Parameters
        ----------
        skew_limit : float
            Degrees of `PhaseTensor.beta` beyond which it is three-dimensional.
        least_ellipticity : float
            Of two-dimensional ground.
        use_errors : bool
            Three-dimensional only where the skew exceeds its limit by its error.

        Returns
        -------
        ndarray of int, shape (n,)
            1, 2 or 3; 0 where there is no phase tensor.
        """
        return _brenlox.dimensions(self.z, self.covariance, skew_limit, least_ellipticity, use_errors)

    def plot(self, axes: tuple[Axes, Axes] | None = None, **options) -> tuple[Axes, Axes]:
        """Draw resistivities and phases; options as of `brenlox.plots.plot_tensor`."""
        from . import plots

        return plots.plot_tensor(self, axes, **options)

    def niblett_bostick(self, of: str = "determinant") -> BostickCurve:
        """Resistivity over depth of an element or effective impedance; see `brenlox.niblett_bostick`.

        Parameters
        ----------
        of : {'determinant', 'xy', 'yx', 'mean', 'sum_of_squares'}
        """
        if of not in _EFFECTIVE:
            raise ValueError(f"of: expected one of {', '.join(_EFFECTIVE)}, received {of!r}")
        known = self.quantities()
        turned = 180.0 if of == "yx" else 0.0
        return niblett_bostick(
            self.frequency, known[f"resistivity_{of}"], known[f"phase_{of}"] + turned,
            known[f"resistivity_{of}_error"], known[f"phase_{of}_error"])

    def quantities(self) -> dict[str, np.ndarray]:
        """Apparent resistivities and phases of the elements, effective ones, strikes and skews.

        Arrays of shape (n,) by name, each with its error: ``resistivity_xy``, ``phase_xy`` and so on for all
        elements, ``resistivity_determinant`` (Berdichevsky & Dmitriev 1976), ``_mean``, ``_sum_of_squares``
        (Rung-Arunwan et al. 2016, PEPI 253, 1-4), ``swift_strike``, ``swift_skew`` (Swift 1967), ``bahr_skew``,
        ``bahr_mu`` and ``bahr_sigma`` (Bahr 1988, J. Geophys. 62, 119-127; 1991, PEPI 66, 24-38).
        """
        if not self._quantities:
            self._quantities.update(_brenlox.tensor_quantities(self.frequency, self.z, self.covariance))
        return self._quantities


class InductionArrows(NamedTuple):
    """Induction arrows; arrays of shape (n,), each with its standard error under the same name.

    Attributes
    ----------
    frequency : ndarray
        Hz.
    real_length, imaginary_length : ndarray
        Dimensionless.
    real_azimuth, imaginary_azimuth : ndarray
        Degrees clockwise from x of the tipper's axes, -180 < azimuth <= 180.
    magnitude : ndarray
        sqrt(abs(Tx)**2 + abs(Ty)**2).
    strike : ndarray
        What the real arrow stands across, degrees, -90 < strike <= 90; NaN of arrows shorter than 0.05.
    """

    frequency: np.ndarray
    real_length: np.ndarray
    real_length_error: np.ndarray
    real_azimuth: np.ndarray
    real_azimuth_error: np.ndarray
    imaginary_length: np.ndarray
    imaginary_length_error: np.ndarray
    imaginary_azimuth: np.ndarray
    imaginary_azimuth_error: np.ndarray
    magnitude: np.ndarray
    magnitude_error: np.ndarray
    strike: np.ndarray
    strike_error: np.ndarray


@dataclass(frozen=True, eq=False)
class Tipper:
    """The vertical magnetic field over the horizontal one, Hz = Tx Hx + Ty Hy, z down.

    Parameters
    ----------
    frequency : ndarray, shape (n,)
        Hz.
    t : ndarray of complex, shape (n, 2)
        Tx, Ty.
    covariance : ndarray, shape (n, 2, 3), optional
        As of a `Tensor`.
    axes : float
        Azimuth of x, degrees clockwise from north.
    """

    frequency: np.ndarray
    t: np.ndarray
    covariance: np.ndarray | None = None
    axes: float = 0.0

    def __post_init__(self) -> None:
        t = complex_numbers("t", self.t)
        check_shape("t", t, None, 2)
        _keep_arrays(self, "t", t)

    @classmethod
    def from_errors(cls, frequency: ArrayLike, t: ArrayLike, error: ArrayLike, **options) -> Tipper:
        """Tippers whose parts have one error each, an array of shape (n, 2); as `Tensor.from_errors`."""
        t = complex_numbers("t", t)
        return cls(frequency, t, _equal_parts(error, t.shape), **options)

    def __len__(self) -> int:
        return len(self.frequency)

    def rotate(self, degrees: float) -> Tipper:
        """The tippers in axes turned clockwise by so many degrees."""
        t, covariance = _brenlox.rotated_tippers(self.t, self.covariance, degrees)
        return replace(self, t=t, covariance=covariance, axes=self.axes + degrees)

    def arrows(self, convention: str = "parkinson", *, imaginary_reversed: bool = False) -> InductionArrows:
        """Induction arrows, their magnitude and the strike across them.

        Parameters
        ----------
        convention : {'parkinson', 'wiese'}
            Real arrows point to conductors, or away from them.
        imaginary_reversed : bool
            Programs disagree on the sign of the imaginary arrow: +(Im Tx, Im Ty) unless it is reversed.

        Notes
        -----
        Parkinson (1959), GJRAS 2, 1-14; Wiese (1962), Geofis. Pura Appl. 52, 83-103.
        """
        if convention not in ("parkinson", "wiese"):
            raise ValueError(f"convention: expected 'parkinson' or 'wiese', received {convention!r}")
        return InductionArrows(self.frequency, **_brenlox.induction_arrows(
            self.t, self.covariance, convention == "wiese", imaginary_reversed))
