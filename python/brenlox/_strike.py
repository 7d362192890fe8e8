"""The strike that tensors or tippers of several stations have in common."""

from __future__ import annotations

from collections.abc import Iterable, Mapping
from dataclasses import dataclass

import numpy as np

from . import _brenlox
from .tensors import Tensor, Tipper

_METHODS = ("phase_tensor", "phase_tensor_alpha", "swift", "tipper")


@dataclass(frozen=True)
class Strike:
    """The common strike of a band of frequencies.

    Attributes
    ----------
    strike : float
        Degrees clockwise from north, -45 < strike <= 45; of tippers -90 < strike <= 90. NaN without data.
    error : float
        Standard error by a bootstrap of the stations, degrees; NaN of a single station.
    alternative : float
        At a right angle to it, -90 < angle <= 90. Tensors leave it open which of the two it is, tippers don't.
    concentration : float
        0 (all directions alike) to 1 (all the same).
    deviation : float
        Circular standard deviation of the points, degrees.
    used, left_out : int
        Points that have a say, and points that the limits leave out.
    band : tuple of float
        Lowest and highest frequency, Hz.
    """

    strike: float
    error: float
    alternative: float
    concentration: float
    deviation: float
    used: int
    left_out: int
    band: tuple[float, float]


def _line_of(stations, method: str) -> _brenlox.StrikeLine:
    if method not in _METHODS:
        raise ValueError(f"method: expected one of {', '.join(_METHODS)}, received {method!r}")
    wanted = Tipper if method == "tipper" else Tensor
    if isinstance(stations, wanted):
        stations = [stations]
    elif isinstance(stations, Mapping):
        stations = stations.values()
    line = _brenlox.StrikeLine()
    for station in stations:
        if not isinstance(station, wanted):
            raise TypeError(f"stations: expected {wanted.__name__} for method {method!r}, "
                            f"received {type(station).__name__}")
        if wanted is Tipper:
            line.add_tippers(station.frequency, station.t, station.covariance, station.axes)
        else:
            line.add_tensors(station.frequency, station.z, station.covariance, station.axes)
    return line


def _strikes(stations, by_decade, method, band, weights, skew_limit, least_ellipticity) -> list[Strike]:
    if weights not in ("ellipticity_squared", "none"):
        raise ValueError(f"weights: expected 'ellipticity_squared' or 'none', received {weights!r}")
    lowest, highest = sorted(band) if band is not None else (0.0, np.inf)
    found = _line_of(stations, method).strikes(
        lowest, highest, by_decade, method, weights != "none", skew_limit, least_ellipticity)
    return [Strike(**each) for each in found]


def strike(
    stations: Iterable[Tensor | Tipper] | Mapping[object, Tensor | Tipper] | Tensor | Tipper,
    *,
    method: str = "phase_tensor",
    band: tuple[float, float] | None = None,
    weights: str = "ellipticity_squared",
    skew_limit: float = 3.0,
    least_ellipticity: float = 0.1,
) -> Strike:
    """The strike of stations, in degrees clockwise from north whatever axes they have.

    Parameters
    ----------
    stations : Tensor or Tipper, iterable or mapping of them
        As `Survey.tensors` gives them; tippers for the method 'tipper'.
    method : {'phase_tensor', 'phase_tensor_alpha', 'swift', 'tipper'}
        Azimuth of the phase tensors, their alpha, the least sum of the normalised diagonals, or what the real
        induction arrows stand across.
    band : (float, float), optional
        Lowest and highest frequency, Hz; all by default.
    weights : {'ellipticity_squared', 'none'}
        Of the methods by phase tensor.
    skew_limit : float
        Degrees; points whose phase tensor has a larger skew have no say.
    least_ellipticity : float
        The same below it.

    Raises
    ------
    ValueError
        For a frequency that isn't finite and above 0, and another method.

    Notes
    -----
    Averages of angles: Mardia & Jupp (2000), Directional Statistics. Phase tensors: Caldwell, Bibby & Brown
    (2004), GJI 158, 457-469. Swift (1967), thesis, MIT.
    """
    return _strikes(stations, False, method, band, weights, skew_limit, least_ellipticity)[0]


def strike_by_decade(
    stations: Iterable[Tensor | Tipper] | Mapping[object, Tensor | Tipper] | Tensor | Tipper,
    *,
    method: str = "phase_tensor",
    band: tuple[float, float] | None = None,
    weights: str = "ellipticity_squared",
    skew_limit: float = 3.0,
    least_ellipticity: float = 0.1,
) -> list[Strike]:
    """The strike of each decade of frequency that has data, ascending; parameters as of `strike`."""
    return _strikes(stations, True, method, band, weights, skew_limit, least_ellipticity)
