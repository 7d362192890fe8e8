"""Files that other programs read: what is chosen, and what was written."""

from __future__ import annotations

import os
from dataclasses import dataclass, field
from typing import Callable, NamedTuple, Sequence

from . import _brenlox

FORMATS = ("edi", "emtfxml", "csv", "geojson", "kml")
DATA_TYPES = ("ExHx", "ExHy", "EyHx", "EyHy", "QP")


@dataclass(frozen=True)
class RhoplusSettings:
    """How merged curves go into Rho+.

    Parameters
    ----------
    resistivity_floor : float
        Minimum error of a resistivity, percent.
    phase_floor : float
        Minimum error of a phase, degrees.
    scale : float
        Factor on all resistivities.
    surface : {'insulating', 'conducting'}
    apply_static : bool
        Include static shift corrections.
    keep_negative_phase : bool
        Use phases of 0 or less as well.
    file_errors : bool
        Raise errors to those of the files where these are larger.
    """

    resistivity_floor: float = 4.0
    phase_floor: float = 2.0
    scale: float = 1.0
    surface: str = "insulating"
    apply_static: bool = True
    keep_negative_phase: bool = False
    file_errors: bool = False

    def __post_init__(self):
        for name in ("resistivity_floor", "phase_floor", "scale"):
            if not 0.0 < getattr(self, name) < float("inf"):
                raise ValueError(f"{name}: expected a number above 0, received {getattr(self, name)!r}")
        if self.surface not in ("insulating", "conducting"):
            raise ValueError(f"surface: expected 'insulating' or 'conducting', received {self.surface!r}")

    def compiled(self) -> _brenlox.RhoplusSettings:
        """The same for the compiled part."""
        settings = _brenlox.RhoplusSettings()
        settings.resistivity_error_floor = self.resistivity_floor
        settings.phase_error_floor = self.phase_floor
        settings.resistivity_scale = self.scale
        settings.surface = int(self.surface == "insulating")
        settings.apply_static = int(self.apply_static)
        settings.exclude_negative_phase = int(not self.keep_negative_phase)
        settings.use_file_errors = int(self.file_errors)
        return settings


@dataclass(frozen=True)
class ExportReport:
    """What an export has written.

    Attributes
    ----------
    files : list of str
        Paths.
    remarks : list of str
        What has to be known of stations: left out, without a place.
    stopped : bool
        `progress` has returned False; what was written by then stays.
    """

    files: list[str]
    remarks: list[str] = field(repr=False)
    stopped: bool


class ZongeFiles(NamedTuple):
    """A Zonge AVG set and the rows of its .avg file."""

    avg: str
    mde: str
    stn: str
    rows: int


@dataclass(frozen=True)
class RhoplusFiles:
    """Rho+ control files of a line: how many stations and rows, and a sentence about them."""

    stations: int
    rows: int
    stopped: bool
    summary: str


def export(
    directory: str | os.PathLike[str],
    format: str,
    lines: str | Sequence[str] | None,
    reference_type: int | None,
    dipole: float | None,
    rotate: float | None,
    reduction: int | None,
    rhoplus: RhoplusSettings | bool,
    plot_link: str | None,
    overwrite: bool,
    progress: Callable[[float], object] | None,
) -> ExportReport:
    """Write curves, tensors or places of the open survey."""
    if format not in FORMATS:
        raise ValueError(f"format: expected one of {', '.join(FORMATS)}, received {format!r}")
    if plot_link and format not in ("geojson", "kml"):
        raise ValueError("plot_link: is for geojson and kml only")
    if lines is None:
        named = []
    else:
        named = [lines] if isinstance(lines, str) else list(lines)
        if not named:
            raise ValueError("lines: there are none")
    request = _brenlox.ExportRequest(format, named, reference_type, dipole, os.path.abspath(directory))
    if rotate is not None:
        request.set_rotation(azimuth("rotate", rotate))
    if reduction is not None:
        if reduction not in (0, 1, 2):
            raise ValueError(f"reduction: expected 0, 1 or 2, received {reduction!r}")
        request.set_reduction(reduction)
    if rhoplus:
        request.set_rhoplus((RhoplusSettings() if rhoplus is True else rhoplus).compiled())
    if plot_link:
        request.set_plot_link(plot_link)
    return ExportReport(**_brenlox.export_survey(request, overwrite, progress))


def write_zonge(path: str | os.PathLike[str], query: _brenlox.CurveQuery, overwrite: bool,
                progress: Callable[[float], object] | None) -> ZongeFiles | None:
    """Write a line's merged curves as a Zonge AVG set."""
    written = _brenlox.write_zonge(query, os.path.abspath(path), overwrite, progress)
    return None if written is None else ZongeFiles(*written)


def write_rhoplus(directory: str | os.PathLike[str], query: _brenlox.CurveQuery, settings: RhoplusSettings | None,
                  root: str, include_empty: bool, rotate: float | None,
                  progress: Callable[[float], object] | None) -> RhoplusFiles:
    """Write a line's merged curves as Rho+ control files."""
    if not root.strip():
        raise ValueError("root: the files need a name")
    compiled = (settings or RhoplusSettings()).compiled()
    compiled.root_name = root
    compiled.exclude_data = int(not include_empty)
    rotation = None if rotate is None else azimuth("rotate", rotate)
    return RhoplusFiles(**_brenlox.write_rhoplus(query, os.path.abspath(directory), compiled, rotation, progress))


def data_type(value: str) -> str:
    """The data type of a file of a line."""
    if value not in DATA_TYPES:
        raise ValueError(f"data_type: expected one of {', '.join(DATA_TYPES)}, received {value!r}")
    return value


def azimuth(name: str, degrees: float) -> float:
    """An angle to rotate to, from -180 to 360 degrees."""
    if not -180.0 <= degrees <= 360.0:
        raise ValueError(f"{name}: expected degrees from -180 to 360, received {degrees!r}")
    return float(degrees)
