"""Impedance tensors and tippers of a station over its frequencies."""

from __future__ import annotations

from dataclasses import dataclass, field, fields, replace

import numpy as np

from . import _brenlox


def _equal_parts(error, shape):
    """Covariances of elements whose real and imaginary parts have one error and are independent."""
    variance = np.broadcast_to(np.square(np.asarray(error, dtype=float)), shape)
    return np.stack([variance, variance, np.zeros(shape)], axis=-1)


@dataclass(frozen=True)
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


@dataclass(frozen=True)
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

    def __post_init__(self):
        object.__setattr__(self, "frequency", np.asarray(self.frequency, dtype=float))
        object.__setattr__(self, "z", np.asarray(self.z, dtype=complex))
        if self.covariance is None:
            object.__setattr__(self, "covariance", np.full(self.z.shape + (3,), np.nan))
        _brenlox.rotated_tensors(self.z, self.covariance, 0.0)  # says which shape is wrong
        if self.frequency.shape != self.z.shape[:1]:
            raise ValueError(
                f"frequency: expected shape ({self.z.shape[0]},), received {self.frequency.shape}")

    @classmethod
    def from_errors(cls, frequency, z, error, **options) -> Tensor:
        """Tensors whose parts have one error each: an array of shape (n, 2, 2), the root of half the variance."""
        z = np.asarray(z, dtype=complex)
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

    def quantities(self) -> dict[str, np.ndarray]:
        """Apparent resistivities and phases of the elements, effective ones, strikes and skews.

        Arrays of shape (n,) by name, each with its error: ``resistivity_xy``, ``phase_xy`` and so on for all
        elements, ``resistivity_determinant`` (Berdichevsky & Dmitriev 1976), ``_mean``, ``_sum_of_squares``
        (Rung-Arunwan et al. 2016, PEPI 253, 1-4), ``swift_strike``, ``swift_skew`` (Swift 1967) and
        ``bahr_skew`` (Bahr 1988, J. Geophys. 62, 119-127).
        """
        if not self._quantities:
            self._quantities.update(_brenlox.tensor_quantities(self.frequency, self.z, self.covariance))
        return self._quantities


@dataclass(frozen=True)
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

    def __post_init__(self):
        object.__setattr__(self, "frequency", np.asarray(self.frequency, dtype=float))
        object.__setattr__(self, "t", np.asarray(self.t, dtype=complex))
        if self.covariance is None:
            object.__setattr__(self, "covariance", np.full(self.t.shape + (3,), np.nan))
        _brenlox.rotated_tippers(self.t, self.covariance, 0.0)  # says which shape is wrong

    def __len__(self) -> int:
        return len(self.frequency)

    def rotate(self, degrees: float) -> Tipper:
        """The tippers in axes turned clockwise by so many degrees."""
        t, covariance = _brenlox.rotated_tippers(self.t, self.covariance, degrees)
        return replace(self, t=t, covariance=covariance, axes=self.axes + degrees)
