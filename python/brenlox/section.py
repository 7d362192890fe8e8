"""Response of a two-dimensional section of the ground, and its sensitivities."""

from __future__ import annotations

from dataclasses import dataclass
from typing import TYPE_CHECKING, Callable, NamedTuple

import numpy as np
from numpy.typing import ArrayLike

from . import _brenlox
from ._arrays import check_shape, integers, real

if TYPE_CHECKING:
    from matplotlib.axes import Axes

AIR = 0
"""Code of the triangles that are air."""


@dataclass(frozen=True, eq=False)
class Section:
    """A section on a mesh of rectangles, each cut into four triangles that meet in its middle.

    Parameters
    ----------
    left_edge : float
        y of the left-most node column, m.
    column_widths, row_heights : ndarray, shape (columns,), (rows,)
        m; rows from the top.
    resistivity : ndarray, shape (rows, columns) or (rows, columns, 4)
        ohm-m, of the triangles top, left, bottom, right of each rectangle.
    codes : ndarray of int, the same shape, optional
        What a triangle is made of: `AIR`, or a number above 0 for each body. By default each different
        resistivity is a body.
    host_layers : int, optional
        How many layers the ground at the sides of the mesh may have, from the top; as many as there are rows by
        default. A model of an inversion has those of its blocks.
    """

    left_edge: float
    column_widths: np.ndarray
    row_heights: np.ndarray
    resistivity: np.ndarray
    codes: np.ndarray | None = None
    host_layers: int | None = None

    def __post_init__(self) -> None:
        for name in ("column_widths", "row_heights"):
            lengths = real(name, getattr(self, name))
            check_shape(name, lengths, None)
            object.__setattr__(self, name, lengths)
        resistivity = self._by_triangles("resistivity", real("resistivity", self.resistivity))
        object.__setattr__(self, "resistivity", resistivity)
        codes = self.codes
        if codes is None:
            codes = np.unique(resistivity, return_inverse=True)[1].reshape(resistivity.shape) + 1
        object.__setattr__(self, "codes", self._by_triangles("codes", integers("codes", codes)))

    def _by_triangles(self, name: str, values: np.ndarray) -> np.ndarray:
        cells = (len(self.row_heights), len(self.column_widths))
        if values.shape == cells:
            values = np.repeat(values[:, :, np.newaxis], 4, axis=2)
        if values.shape != cells + (4,):
            raise ValueError(f"{name}: expected shape {cells} or {cells + (4,)}, received {values.shape}")
        return np.ascontiguousarray(values)

    def _compiled(self) -> _brenlox.Section:
        return _brenlox.Section(
            self.left_edge, self.column_widths, self.row_heights, self.resistivity, self.codes, self.host_layers)

    @property
    def node_x(self) -> np.ndarray:
        """y of the node columns, m, shape (columns + 1,)."""
        return self.left_edge + np.concatenate([[0.0], np.cumsum(self.column_widths)])

    @property
    def node_z(self) -> np.ndarray:
        """Depth of the node rows, m, shape (rows + 1,)."""
        return np.concatenate([[0.0], np.cumsum(self.row_heights)])

    def plot(self, ax: Axes | None = None, **options) -> Axes:
        """Draw log10 of the resistivity, depth downwards; see `brenlox.plots.plot_section`."""
        from . import plots

        return plots.plot_section(self, ax, **options)


class ModeResponse(NamedTuple):
    """One mode: arrays of shape (sites, frequencies), or of a Jacobian (sites, frequencies, parameters)."""

    log10_resistivity: np.ndarray
    phase: np.ndarray


class Response(NamedTuple):
    """Both modes: TE, the electric field along strike, and TM, across."""

    te: ModeResponse
    tm: ModeResponse


def _response_of(arrays: dict[str, np.ndarray]) -> Response | None:
    if not arrays:
        return None
    return Response(
        ModeResponse(arrays["te_log10_resistivity"], arrays["te_phase"]),
        ModeResponse(arrays["tm_log10_resistivity"], arrays["tm_phase"]))


def response(
    section: Section,
    sites: ArrayLike,
    frequencies: ArrayLike,
    *,
    sensitivities: bool = False,
    parameters: ArrayLike | None = None,
    threads: int = 0,
    progress: Callable[[float], object] | None = None,
) -> Response | None | tuple[Response | None, Response | None]:
    """The magnetotelluric response at sites on the ground, by finite elements.

    Parameters
    ----------
    section : Section
    sites : array_like, shape (s,)
        y along the line, m; each is taken to the nearest node column.
    frequencies : array_like, shape (f,)
        Hz.
    sensitivities : bool
        Give the Jacobian as well.
    parameters : ndarray of int, shape (rows, columns, 4), optional
        Which parameter the log10 resistivity of a triangle is, from 0; -1 for none. By default each rectangle
        of ground is one, counted along the rows from the top.
    threads : int
        0: as many as there are cores. The result doesn't depend on it.
    progress : callable, optional
        Called with the share done; the work stops where it returns False.

    Returns
    -------
    Response
        log10 of apparent resistivity (ohm-m) and phase (degrees, 45 over a uniform ground), each of shape
        (s, f). None if `progress` has stopped the work.
    Response
        Only with `sensitivities`: the change of these for a decade of each parameter, shape (s, f, p).

    Raises
    ------
    ValueError
        For a section or a site that has no response, with the place.

    Notes
    -----
    de Groot-Hedlin & Constable (1990), Geophysics 55, 1613-1624; the Jacobian by reciprocity, de Lugao &
    Wannamaker (1996), Geophys. J. Int. 127, 806-810, with the layered host held fixed.
    """
    compiled = section._compiled()
    sites, frequencies = real("sites", sites), real("frequencies", frequencies)
    first = _share(progress, 0.0, 0.5) if sensitivities else progress
    computed = _response_of(_brenlox.section_response(compiled, sites, frequencies, threads, first))
    if not sensitivities:
        return computed
    if computed is None:
        return None, None
    if parameters is None:
        parameters = _one_for_each_rectangle(section)
    parameters = integers("parameters", parameters)
    count = int(parameters.max(initial=-1)) + 1
    return computed, _response_of(
        _brenlox.section_jacobian(
            compiled, sites, frequencies, parameters, count, threads, _share(progress, 0.5, 1.0)))


def _share(progress: Callable[[float], object] | None, begin: float, end: float) -> Callable[[float], object] | None:
    """Progress of a part of the work."""
    if progress is None:
        return None
    return lambda share: progress(begin + (end - begin) * share)


def mesh_warnings(section: Section, sites: ArrayLike, frequencies: ArrayLike) -> list[str]:
    """What a mesh is too coarse or too small for at these frequencies, in sentences; empty if all is well.

    Parameters
    ----------
    section, sites, frequencies
        As of `response`.

    Raises
    ------
    ValueError
        As `response` does.
    """
    return _brenlox.section_warnings(section._compiled(), real("sites", sites), real("frequencies", frequencies))


def tipper(section: Section, sites: ArrayLike, frequencies: ArrayLike, *, threads: int = 0,
           progress: Callable[[float], object] | None = None) -> np.ndarray | None:
    """The tipper Hz / Hy over a section, y along the line and z down; parameters as of `response`.

    Returns
    -------
    ndarray of complex, shape (s, f)
        Of time dependence exp(+i omega t). None if `progress` has stopped the work.
    """
    return _brenlox.section_tipper(
        section._compiled(), real("sites", sites), real("frequencies", frequencies), threads, progress)


def _one_for_each_rectangle(section: Section) -> np.ndarray:
    is_ground = section.codes != AIR
    numbers = np.cumsum(is_ground.any(axis=2)).reshape(is_ground.shape[:2]) - 1
    return np.where(is_ground, numbers[:, :, np.newaxis], -1)
