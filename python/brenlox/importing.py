"""Field files into a survey: what is chosen, what would be stored, and what was."""

from __future__ import annotations

import os
from dataclasses import dataclass, field
from typing import Callable, Iterable, NamedTuple, Sequence, Union

from . import _brenlox

PathLike = Union[str, "os.PathLike[str]"]
Progress = Callable[[float], object]

_ROWS = ("line", "event", "rate")  # in the order of the compiled part


class Proposal(NamedTuple):
    """A choice that the files themselves propose."""

    choice: str
    value: str
    why: str


@dataclass(frozen=True)
class PlannedReading:
    """One section of a file as an import would store it.

    Attributes
    ----------
    path : str
    is_stored : bool
        False: it gives no reading; `remarks` say why.
    site : str
        Name in the file; empty where the file has the station itself.
    line : str
    station : float
        The first one of `stations` where the file holds several.
    stations : int
    event : int
    scan_rate : float
        Hz; 0 of merged curves.
    frequencies : int
        How many.
    place : str
        Latitude and longitude, or map coordinates; empty without a place.
    turn_ey, from_impedance : bool
        Whether the sign of Ey is turned, and whether curves are computed from impedances.
    problems : list of str
        What may be wrong, such as two sites on one station.
    remarks : list of str
        The problems in detail, then others.
    """

    path: str
    is_stored: bool
    site: str
    line: str
    station: float
    stations: int
    event: int
    scan_rate: float
    frequencies: int
    place: str
    turn_ey: bool
    from_impedance: bool
    problems: list[str]
    remarks: list[str] = field(repr=False)


@dataclass(frozen=True)
class ImportPlan:
    """What an import would store; nothing is stored yet.

    Attributes
    ----------
    rows : list of PlannedReading
        In the order of the files and their sections.
    proposals : list of Proposal
        What was chosen because the files propose it.
    left_out : int
        Files found in folders that are no field files.
    summary : str
    stopped : bool
        `progress` has returned False; there are no rows then.
    """

    rows: list[PlannedReading]
    proposals: list[Proposal]
    left_out: int
    summary: str
    stopped: bool

    def __str__(self) -> str:
        return self.summary

    @property
    def problems(self) -> list[PlannedReading]:
        """The rows to look at before the import."""
        return [row for row in self.rows if row.problems]


@dataclass(frozen=True)
class ImportedFile:
    """What an import did with one file.

    Attributes
    ----------
    path : str
    readings, frequencies : int
        Readings stored, and frequencies of the largest one.
    sections_turned : int
        Whose Ey got the other sign.
    replaced_readings : int
        Of an earlier import of the file.
    failure : str
        Why the file gave nothing, or an error on the way; empty if all went well.
    remarks : list of str
        What was read otherwise than it stands or left unused.
    """

    path: str
    readings: int
    frequencies: int
    sections_turned: int
    replaced_readings: int
    failure: str
    remarks: list[str] = field(repr=False)


@dataclass(frozen=True)
class ImportReport:
    """What an import has stored.

    Attributes
    ----------
    files : list of ImportedFile
    stations : list of (str, float)
        Line and station of what was found, each once.
    problems : list of str
        What needs an action.
    remarks : list of str
        What was read otherwise than it stands or left unused, a line for each kind.
    proposals : list of Proposal
    left_out : int
        Files found in folders that are no field files.
    summary : str
    stopped : bool
        `progress` has returned False; what was stored by then stays.
    """

    files: list[ImportedFile]
    stations: list[tuple[str, float]]
    problems: list[str]
    remarks: list[str]
    proposals: list[Proposal]
    left_out: int
    summary: str
    stopped: bool

    def __str__(self) -> str:
        return "\n".join([self.summary, *self.problems])

    @property
    def readings(self) -> int:
        """How many were stored."""
        return sum(file.readings for file in self.files)

    @property
    def failures(self) -> list[ImportedFile]:
        """Files that gave no reading, or an error."""
        return [file for file in self.files if file.failure or not file.readings]


@dataclass(frozen=True)
class ImportChoices:
    """The choices of an import by their names; None leaves a choice to the files.

    Parameters
    ----------
    auto : bool
        Look into the files and choose what isn't given.
    reference_type : {0, 1, 2}
        Not remote referenced, remote referenced, cross referenced.
    line, event, rate
        Name of the line, number of the event, scan rate in Hz.
    line_columns, event_columns, rate_columns : (int, int)
        Where the file names hold them instead: first column, counted from 1, and width.
    stations_by : {'sectid', 'sectid_digits', 'distance', 'count'}
        The number that the name of the site begins with; its last digits; the distance along the line in m; or
        counted from `start_station` by `station_step`, m.
    turn_ey : {'never', 'needed', 'always'}
        Turn the sign of Ey, 180 degrees on the phases of EyHx and EyHy, in the sections whose YX phases lie mostly in
        -180..-90, or in every one.
    from_impedance : bool
        Compute resistivity and phase where a file has impedances only.
    convert_geographic : bool
        Stations get the files' latitude and longitude in the survey's projection as map place.
    line_direction : {'EN', 'NE'}
        EN: the line is local east, the station local north; NE the other way round.
    reduction : {0, 1, 2}
        What the files hold: raw, averaged or merged data.
    extension : str
        Of the files in folders; by default any field file, without `auto` edi.
    """

    auto: bool = True
    reference_type: int | None = None
    line: str | None = None
    event: int | None = None
    rate: float | None = None
    line_columns: tuple[int, int] | None = None
    event_columns: tuple[int, int] | None = None
    rate_columns: tuple[int, int] | None = None
    stations_by: str | None = None
    start_station: float | None = None
    station_step: float = 100.0
    turn_ey: str | None = None
    from_impedance: bool = False
    convert_geographic: bool = False
    line_direction: str = "EN"
    reduction: int = 0
    extension: str = ""

    def __post_init__(self):
        _one_of("stations_by", self.stations_by, (None, "count", "sectid", "sectid_digits", "distance"))
        _one_of("turn_ey", self.turn_ey, (None, "never", "needed", "always"))
        _one_of("line_direction", self.line_direction, ("EN", "NE"))
        _one_of("reduction", self.reduction, (0, 1, 2))
        _one_of("reference_type", self.reference_type, (None, 0, 1, 2))
        for name in _ROWS:
            typed, columns = getattr(self, name), getattr(self, f"{name}_columns")
            if typed is not None and columns is not None:
                raise ValueError(f"{name}: give either {name} or {name}_columns")
            if not self.auto and typed is None and columns is None:
                raise ValueError(f"{name}: {name} or {name}_columns is required without auto")
        if not self.auto and self.reference_type is None:
            raise ValueError("reference_type: is required without auto")

    def request(self, paths: Sequence[str]) -> _brenlox.ImportRequest:
        """The same for the compiled part."""
        request = _brenlox.ImportRequest(paths, self.auto)
        request.extension = self.extension
        request.set_reduction(self.reduction)
        if self.reference_type is not None:
            request.set_reference_type(self.reference_type)
        for number, name in enumerate(_ROWS):
            typed, columns = getattr(self, name), getattr(self, f"{name}_columns")
            if columns is not None:
                start, width = columns
                request.set_columns(number, start, width)
            elif typed is not None:
                request.set_typed(number, _text(typed))
        if self.stations_by is not None:
            request.set_stations_by(self.stations_by)
        if self.start_station is not None:
            request.set_start_station(_text(self.start_station))
        request.set_station_step(_text(self.station_step))
        if self.turn_ey is not None:
            request.set_turn_ey(self.turn_ey)
        if self.from_impedance:
            request.set_from_impedance()
        if self.convert_geographic:
            request.set_convert_geographic()
        if self.line_direction == "NE":
            request.set_line_along_north()
        return request


def import_files(paths: PathLike | Iterable[PathLike], choices: ImportChoices,
                 progress: Progress | None) -> ImportReport:
    """Store what the files hold in the open survey."""
    found = _brenlox.import_files(choices.request(_texts(paths)), progress)
    found["files"] = [ImportedFile(**file) for file in found["files"]]
    found["proposals"] = [Proposal(*proposal) for proposal in found["proposals"]]
    return ImportReport(**found)


def plan_import(paths: PathLike | Iterable[PathLike], choices: ImportChoices,
                progress: Progress | None) -> ImportPlan:
    """The rows that `import_files` would store in the open survey."""
    planned = _brenlox.plan_import(choices.request(_texts(paths)), progress)
    planned["rows"] = [PlannedReading(**row) for row in planned["rows"]]
    planned["proposals"] = [Proposal(*proposal) for proposal in planned["proposals"]]
    return ImportPlan(**planned)


def _texts(paths) -> list[str]:
    single = isinstance(paths, (str, os.PathLike))
    texts = [os.fspath(path) for path in ([paths] if single else paths)]
    if not texts:
        raise ValueError("paths: there are none")
    for path in texts:
        if not os.path.exists(path):
            raise FileNotFoundError(2, "There is no such file or folder", path)
    return texts


def _text(value) -> str:
    return value if isinstance(value, str) else f"{value:.15g}"


def _one_of(name, value, known):
    if value not in known:
        raise ValueError(f"{name}: expected one of {', '.join(map(repr, known))}, received {value!r}")
