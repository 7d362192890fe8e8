"""Pictures of sections and responses, by matplotlib."""

from __future__ import annotations

from typing import TYPE_CHECKING, Sequence

import numpy as np

if TYPE_CHECKING:
    from matplotlib.axes import Axes
    from matplotlib.colors import Colormap
    from numpy.typing import ArrayLike

    from .occam import Response
    from .section import Section
    from .survey import Curve
    from .tensors import Tensor

_TYPE_COLOURS = {"ExHy": "#0054be", "EyHx": "#d05800", "ExHx": "tab:green", "EyHy": "tab:purple"}
_ELEMENTS = ("xx", "xy", "yx", "yy", "determinant", "mean", "sum_of_squares")
_ELEMENT_COLOURS = {"xx": "tab:green", "xy": "#0054be", "yx": "#d05800", "yy": "tab:purple"}
_MODE_COLOURS = {"TE": "tab:blue", "TM": "tab:red"}
_MODE_MARKERS = {"TE": "o", "TM": "s"}


def _pyplot():
    try:
        import matplotlib.pyplot as pyplot
    except ImportError as failure:
        raise ImportError("Plots need matplotlib, which isn't installed (Debian: python3-matplotlib)") from failure
    return pyplot


def plot_section(
    section: Section,
    ax: Axes | None = None,
    *,
    sites: ArrayLike | None = None,
    site_names: Sequence[str] | None = None,
    max_depth: float | None = None,
    extent: tuple[float, float] | None = None,
    limits: tuple[float, float] | None = None,
    colours: str | Colormap = "turbo_r",
    mesh: bool = False,
    title: str | None = None,
) -> Axes:
    """Draw a section: log10 of the resistivity in colours, low ones red, depth downwards, sites on top.

    Parameters
    ----------
    section : Section
    ax : matplotlib.axes.Axes, optional
        To draw into; a new figure without it.
    sites : array_like, shape (s,), optional
        Positions along the line, m.
    site_names : sequence of str, optional
        Of the sites.
    max_depth : float, optional
        m; by default as deep as the part drawn is wide.
    extent : (float, float), optional
        First and last position drawn, m; by default the sites with a margin, or the whole section without any.
    limits : (float, float), optional
        log10 ohm-m of the first and the last colour; by default half decades around what is drawn.
    colours : str or matplotlib.colors.Colormap
    mesh : bool
        Outline where the resistivity changes.
    title : str, optional

    Returns
    -------
    matplotlib.axes.Axes

    Raises
    ------
    ImportError
        Without matplotlib.
    """
    pyplot = _pyplot()
    x, z = section.node_x, section.node_z
    sites = None if sites is None else np.asarray(sites, dtype=float)
    left, right = _extent(x, sites) if extent is None else extent
    depth = min(z[-1], right - left) if max_depth is None else min(max_depth, z[-1])
    values = _log10_of_ground(section)
    drawn = values[np.ix_((z[:-1] < depth), (x[1:] > left) & (x[:-1] < right))]
    low, high = _limits(drawn) if limits is None else limits
    if ax is None:
        _, ax = pyplot.subplots(figsize=(12.8, 6.0), layout="constrained")

    unit, divisor = ("km", 1000.0) if max(right - left, depth) >= 10000.0 else ("m", 1.0)
    coloured = _draw_cells(ax, x / divisor, z / divisor, values, colours, (low, high))
    if mesh:
        _draw_changes(ax, x / divisor, z / divisor, values)
    ax.set_xlim(left / divisor, right / divisor)
    ax.set_ylim(depth / divisor, 0.0)
    ax.set_xlabel(f"Distance ({unit})")
    ax.set_ylabel(f"Depth ({unit})")
    ax.tick_params(top=False)
    bar = ax.figure.colorbar(coloured, ax=ax, pad=0.02, extend=_extend(drawn, low, high))
    bar.set_label("log$_{10}$ resistivity (Ω m)")
    names_height = _draw_sites(ax, sites, site_names, divisor, (left, right))
    if title:
        ax.set_title(title, pad=8.0 + names_height)
    return ax


def _extent(x, sites):
    if sites is None or not len(sites):
        return x[0], x[-1]
    ordered = np.sort(sites)
    margin = np.median(np.diff(ordered)) if len(ordered) > 1 else 0.1 * (x[-1] - x[0])
    return max(x[0], ordered[0] - margin), min(x[-1], ordered[-1] + margin)


def _log10_of_ground(section) -> np.ndarray:
    """By rectangle and triangle; NaN in the air."""
    return np.where(section.codes == 0, np.nan, np.log10(section.resistivity))


def _limits(drawn) -> tuple[float, float]:
    known = drawn[np.isfinite(drawn)]
    if not known.size:
        return 0.0, 3.0
    low, high = np.floor(2.0 * known.min()) / 2.0, np.ceil(2.0 * known.max()) / 2.0
    return (low, high) if high > low else (low - 0.5, high + 0.5)


def _extend(drawn, low, high) -> str:
    known = drawn[np.isfinite(drawn)]
    below, above = bool((known < low).any()), bool((known > high).any())
    return {(False, False): "neither", (True, False): "min", (False, True): "max", (True, True): "both"}[below, above]


def _draw_cells(ax, x, z, values, colours, limits):
    """Rectangles of one value at once, those that are cut by a slope as triangles above them."""
    from matplotlib.collections import PolyCollection

    whole = (values == values[:, :, :1]).all(axis=2)
    rectangles = np.ma.masked_invalid(np.where(whole, values[:, :, 0], np.nan))
    coloured = ax.pcolormesh(x, z, rectangles, cmap=colours, vmin=limits[0], vmax=limits[1], rasterized=True)
    corners, of_corners = [], []
    for row, column in np.argwhere(~whole):
        (left, right), (top, bottom) = x[column : column + 2], z[row : row + 2]
        middle = (0.5 * (left + right), 0.5 * (top + bottom))
        around = [(left, top), (right, top), (right, bottom), (left, bottom)]
        # triangles of a rectangle: top, left, bottom, right
        for triangle, (first, second) in enumerate([(0, 1), (3, 0), (2, 3), (1, 2)]):
            if np.isfinite(values[row, column, triangle]):
                corners.append([around[first], around[second], middle])
                of_corners.append(values[row, column, triangle])
    if corners:
        triangles = PolyCollection(corners, array=np.array(of_corners), cmap=colours, edgecolors="face",
                                   linewidths=0.2)
        triangles.set_clim(*limits)
        ax.add_collection(triangles, autolim=False)
    return coloured


def _draw_changes(ax, x, z, values):
    """A line wherever neighbouring rectangles differ: the outlines of the blocks."""
    from matplotlib.collections import LineCollection

    mean = values.mean(axis=2)
    rows, columns = np.nonzero(mean[1:] != mean[:-1])
    across = [[(x[c], z[r + 1]), (x[c + 1], z[r + 1])] for r, c in zip(rows, columns)]
    rows, columns = np.nonzero(mean[:, 1:] != mean[:, :-1])
    down = [[(x[c + 1], z[r]), (x[c + 1], z[r + 1])] for r, c in zip(rows, columns)]
    ax.add_collection(LineCollection(across + down, colors="black", linewidths=0.3, alpha=0.5), autolim=False)


def _draw_sites(ax, sites, names, divisor, extent) -> float:
    """Triangles on the ground with their names above; gives the height of the names in points."""
    if sites is None or not len(sites):
        return 0.0
    within = (sites >= extent[0]) & (sites <= extent[1])
    above = ax.get_xaxis_transform()
    ax.plot(sites[within] / divisor, np.ones(within.sum()), "v", transform=above, color="black", markersize=6,
            clip_on=False, zorder=5)
    if names is None:
        return 6.0
    shown = [(site, name) for site, name, here in zip(sites, names, within) if here]
    # Names stand upright; where there are many, every so manyth.
    step = max(1, int(np.ceil(len(shown) / 60)))
    for site, name in shown[::step]:
        ax.annotate(name, (site / divisor, 1.0), xycoords=above, xytext=(0, 7), textcoords="offset points",
                    rotation=90, ha="center", va="bottom", fontsize=8, annotation_clip=False)
    return 6.0 + 5.0 * max(len(name) for _, name in shown[::step])


def _curve_axes(axes: tuple[Axes, Axes] | None) -> tuple[Axes, Axes]:
    if axes is None:
        _, axes = _pyplot().subplots(2, 1, sharex=True, figsize=(7.0, 7.0), layout="constrained", height_ratios=(3, 2))
    return axes


def _label_curve_axes(resistivity: Axes, phase: Axes) -> None:
    resistivity.set(xscale="log", yscale="log", ylabel="Apparent resistivity (Ω m)")
    phase.set(xscale="log", xlabel="Frequency (Hz)", ylabel="Phase (degrees)")
    if not phase.xaxis_inverted():
        phase.invert_xaxis()  # depth of investigation grows to the right
    for pane in (resistivity, phase):
        pane.grid(True, which="major", linewidth=0.3)


def plot_curve(curve: Curve, axes: tuple[Axes, Axes] | None = None, *, masked: bool = True) -> tuple[Axes, Axes]:
    """Draw resistivity and phase of a reading over the frequency, with its errors.

    Parameters
    ----------
    curve : brenlox.Curve
        Not of a tipper.
    axes : pair of matplotlib.axes.Axes, optional
        For resistivity and phase, of an earlier curve to be compared; a new figure without them.
    masked : bool
        Draw points that don't count as well, as grey crosses.

    Returns
    -------
    pair of matplotlib.axes.Axes
    """
    if curve.data_type.startswith("Hz"):
        raise ValueError(f"curve: expected resistivities and phases, received {curve.data_type}")
    axes = _curve_axes(axes)
    everything = (curve.resistivity * curve.static_factor, curve.phase + curve.phase_offset)
    errors = (curve.resistivity_error * curve.static_factor, curve.phase_error)
    deviations = (curve.resistivity_deviation * curve.static_factor, curve.phase_deviation)
    colour = _TYPE_COLOURS.get(curve.data_type, "black")
    for pane, counting, all_values, error, deviation in zip(axes, curve.masked(), everything, errors, deviations):
        bars = error if curve.reduction == 0 or np.isfinite(error).any() else deviation
        pane.errorbar(curve.frequency, counting, np.where(np.isfinite(bars), bars, 0.0), fmt="o", color=colour,
                      markersize=4, linewidth=0.8, label=f"{curve.data_type}, station {curve.station:g}")
        left_out = np.isnan(counting) & np.isfinite(all_values)
        if masked and left_out.any():
            pane.plot(curve.frequency[left_out], all_values[left_out], "x", color="grey", markersize=5)
    resistivity, phase = axes
    _label_curve_axes(resistivity, phase)
    resistivity.set_title(f"Line {curve.line}")
    resistivity.legend(fontsize=8)
    return resistivity, phase


def plot_tensor(tensor: Tensor, axes: tuple[Axes, Axes] | None = None, *,
                elements: Sequence[str] = ("xy", "yx")) -> tuple[Axes, Axes]:
    """Draw apparent resistivity and phase of elements over the frequency, with their errors.

    Parameters
    ----------
    tensor : brenlox.Tensor
    axes : pair of matplotlib.axes.Axes, optional
        For resistivity and phase, of an earlier tensor or curve to be compared; a new figure without them.
    elements : sequence of {'xx', 'xy', 'yx', 'yy', 'determinant', 'mean', 'sum_of_squares'}
        Phases of yx are turned by 180 degrees, so that both curves lie together over layered ground.

    Returns
    -------
    pair of matplotlib.axes.Axes
    """
    for element in elements:
        if element not in _ELEMENTS:
            raise ValueError(f"elements: expected some of {', '.join(_ELEMENTS)}, received {element!r}")
    axes = _curve_axes(axes)
    known = tensor.quantities()
    for element in elements:
        for pane, quantity in zip(axes, ("resistivity", "phase")):
            values, bars = known[f"{quantity}_{element}"], known[f"{quantity}_{element}_error"]
            if element == "yx" and quantity == "phase":
                values = values % 360.0 - 180.0
            pane.errorbar(tensor.frequency, values, np.where(np.isfinite(bars), bars, 0.0),
                          fmt="o", color=_ELEMENT_COLOURS.get(element, "black"), markersize=4, linewidth=0.8,
                          label=" ".join(filter(None, [element, tensor.station and f"station {tensor.station}"])))
    resistivity, phase = axes
    _label_curve_axes(resistivity, phase)
    if elements:
        resistivity.legend(fontsize=8)
    return resistivity, phase


def plot_response(response: Response, site: int | str, axes: tuple[Axes, Axes] | None = None) -> tuple[Axes, Axes]:
    """Draw observed and modelled resistivity and phase of a site over the frequency.

    Parameters
    ----------
    response : brenlox.occam.Response
    site : int or str
        Index from 0, or name.
    axes : pair of matplotlib.axes.Axes, optional
        For resistivity and phase; a new figure without them.

    Returns
    -------
    pair of matplotlib.axes.Axes
    """
    number = response.run.site_index(site)
    axes = _curve_axes(axes)
    for mode in ("TE", "TM"):
        for pane, quantity in zip(axes, ("log10_resistivity", "phase")):
            of_site = (response.site == number) & (response.mode == mode) & (response.quantity == quantity)
            if not of_site.any():
                continue
            order = np.argsort(response.frequencies[of_site])
            frequency = response.frequencies[of_site][order]
            observed, modelled = response.datum[of_site][order], response.modelled[of_site][order]
            errors = response.error[of_site][order]
            if quantity == "log10_resistivity":
                bars = 10.0**observed * np.abs([1.0 - 10.0**-errors, 10.0**errors - 1.0])
                observed, modelled = 10.0**observed, 10.0**modelled
            else:
                bars = errors
            pane.errorbar(frequency, observed, bars, fmt=_MODE_MARKERS[mode], color=_MODE_COLOURS[mode],
                          markersize=5, linewidth=0.8, label=f"{mode} observed")
            pane.plot(frequency, modelled, "-", color=_MODE_COLOURS[mode], label=f"{mode} modelled")
    resistivity, phase = axes
    _label_curve_axes(resistivity, phase)
    resistivity.set_title(f"{response.run.site_names[number]}, iteration {response.iteration.number}")
    if resistivity.get_legend_handles_labels()[0]:
        resistivity.legend(fontsize=8)
    return resistivity, phase
