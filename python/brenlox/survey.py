"""The survey database: readings, curves and tensors of stations."""

from __future__ import annotations

import atexit
import os
from dataclasses import dataclass, field, fields
from typing import TYPE_CHECKING, Callable, Iterable, Sequence, Union

import numpy as np

from . import _brenlox, exporting, occam, runs
from .exporting import ExportReport, RhoplusFiles, RhoplusSettings, ZongeFiles
from .importing import ImportChoices, ImportPlan, ImportReport, PathLike, import_files, plan_import
from .runs import RunChoices
from .tensors import Tensor, Tipper

if TYPE_CHECKING:
    import pandas
    from matplotlib.axes import Axes

_REDUCTIONS = {"raw": 0, "averaged": 1, "merged": 2}

atexit.register(_brenlox.close_survey)
if hasattr(os, "register_at_fork"):
    os.register_at_fork(after_in_child=_brenlox.leave_survey_to_parent)


@dataclass(frozen=True)
class Station:
    """A station of a line.

    Attributes
    ----------
    line : str
    number : float
    name : str
        Of its site, as the files call it; empty if that only repeats the number.
    map_x, map_y : float
        m.
    latitude, longitude, elevation : float or None
        Degrees, north and east positive, and m; None where no file gave them.
    """

    line: str
    number: float
    name: str
    map_x: float
    map_y: float
    latitude: float | None
    longitude: float | None
    elevation: float | None


@dataclass(frozen=True)
class Change:
    """A command that can be undone: `kind` is 'masks', 'use' or 'static factor', `readings` are the ids."""

    kind: str
    readings: tuple[int, ...] = field(repr=False)


@dataclass(frozen=True, eq=False)
class Curve:
    """One reading of the survey.

    Arrays have the shape (n,) and can't be written; they look into the memory of the curve, live as long as
    they are used, and don't change with the survey. A value that isn't there is NaN.

    Attributes
    ----------
    frequency : ndarray
        Hz, ascending.
    resistivity, phase : ndarray
        ohm-m and degrees as stored: without `static_factor` and `phase_offset`. Of a tipper (HzHx, HzHy) the
        real and the imaginary part.
    resistivity_error, phase_error : ndarray
        Standard errors of the files, ohm-m and degrees.
    resistivity_deviation, phase_deviation : ndarray
        Standard deviations of the repeats of an average; of a raw reading the magnitudes of the fields.
    impedance_real, impedance_imaginary : ndarray
        As the file has them; of a raw reading only.
    resistivity_counts, phase_counts : ndarray of int
        0 where a point is masked.
    line, station, data_type, reference_type, dipole, scan_rate, event
        What the reading is of; dipole m, scan rate Hz, 0 of a merged curve.
    reduction : {0, 1, 2}
        Raw, averaged, merged.
    id : int
        Of its row in the survey.
    use, use_resistivity, use_phase : bool
        Whether the reading, or a part of it, is switched on.
    static_factor, phase_offset : float
        Factor on the resistivity, and degrees to be added to the phase.
    ey_turned : bool or None
        Whether the import has turned the sign of Ey; None if that isn't known.
    hx_azimuth : float or None
        Degrees clockwise from north.
    """

    frequency: np.ndarray
    resistivity: np.ndarray
    phase: np.ndarray
    resistivity_deviation: np.ndarray = field(repr=False)
    phase_deviation: np.ndarray = field(repr=False)
    impedance_real: np.ndarray = field(repr=False)
    impedance_imaginary: np.ndarray = field(repr=False)
    resistivity_error: np.ndarray
    phase_error: np.ndarray
    resistivity_counts: np.ndarray = field(repr=False)
    phase_counts: np.ndarray = field(repr=False)
    line: str
    station: float
    data_type: str
    reference_type: int
    dipole: float
    scan_rate: float
    reduction: int
    event: int
    id: int
    use: bool
    use_resistivity: bool
    use_phase: bool
    static_factor: float
    phase_offset: float
    ey_turned: bool | None
    hx_azimuth: float | None

    def __len__(self) -> int:
        return len(self.frequency)

    def masked(self) -> tuple[np.ndarray, np.ndarray]:
        """Resistivity and phase that count: NaN where they are masked or switched off, factor and offset included."""
        resistivity = np.where(self.resistivity_counts == 1, self.resistivity * self.static_factor, np.nan)
        phase = np.where(self.phase_counts == 1, self.phase + self.phase_offset, np.nan)
        if not (self.use and self.use_resistivity):
            resistivity = np.full(len(self), np.nan)
        if not (self.use and self.use_phase):
            phase = np.full(len(self), np.nan)
        return resistivity, phase

    def to_dict(self) -> dict[str, np.ndarray]:
        """The arrays by name, as a table takes them."""
        return {each.name: getattr(self, each.name) for each in fields(self)
                if isinstance(getattr(self, each.name), np.ndarray)}

    def plot(self, axes: tuple[Axes, Axes] | None = None, **options) -> tuple[Axes, Axes]:
        """Draw resistivity and phase; options as of `brenlox.plots.plot_curve`."""
        from . import plots

        return plots.plot_curve(self, axes, **options)


class Survey:
    """An open survey; use `brenlox.open`. Closed by `close`, or at the end of a ``with`` block."""

    def __init__(self, path, read_only=False):
        self._path = os.fspath(path)
        if not os.path.exists(self._path):
            raise FileNotFoundError(f"The specified file does not exist: {self._path}")
        _brenlox.open_survey(self._path, read_only)
        self._open = True
        self._process = os.getpid()
        #: What the program has to tell about the opening.
        self.messages = _brenlox.messages()

    def __enter__(self) -> Survey:
        return self

    def __exit__(self, *failure):
        self.close()

    def __del__(self):
        if getattr(self, "_open", False):
            self.close()

    def __repr__(self) -> str:
        return f"<brenlox.Survey {self._path!r}{'' if self._open else ', closed'}>"

    def close(self) -> None:
        """Close the survey's file. Arrays that were taken from it stay."""
        if self._open:
            self._open = False
            if self._process == os.getpid():
                _brenlox.close_survey()

    def _require_open(self):
        if self._open and self._process != os.getpid():
            raise _brenlox.Error("The survey was opened in another process; open it again in this one")
        if not self._open:
            raise _brenlox.Error("The survey is closed")

    @property
    def path(self) -> str:
        """Of the survey's file, as it was opened."""
        return self._path

    @property
    def lines(self) -> list[str]:
        """Names of the lines."""
        self._require_open()
        return _brenlox.lines()

    def info(self) -> dict:
        """Rows of the tables, lines with their stations, sites, and what there are readings of.

        With keys ``tables``, ``lines``, ``sites``, ``reference_types``, ``data_types``, ``dipoles`` (m) and
        ``scan_rates`` (Hz).
        """
        self._require_open()
        return _brenlox.info()

    def files(self) -> list[dict]:
        """The imported files: id, name, line, station, event, reference_type, reduction, scan_rate (Hz), dipole (m)."""
        self._require_open()
        return _brenlox.files()

    def stations(self, line: str | None = None) -> list[Station]:
        """All stations, or those of a line, by line and number."""
        self._require_open()
        return [Station(**row) for row in _brenlox.stations() if line is None or row["line"].lower() == line.lower()]

    def kinds(self, line: str) -> list[tuple[int, float]]:
        """Reference types and dipole lengths (m) of a line's readings."""
        self._require_open()
        return _brenlox.kinds(line)

    def data_types(self, line: str, station: float | str | Station) -> list[str]:
        """What a station has readings of: 'ExHy', 'EyHx' and so on.

        Raises
        ------
        ValueError
            For a line or station that the survey doesn't have.
        """
        self._require_open()
        kinds = _brenlox.station_kinds(line, _station_text(station))
        return sorted({data_type for data_type, *_ in kinds})

    def scan_rates(self, line: str, station: float | str | Station, data_type: str | None = None) -> list[float]:
        """Scan rates (Hz) of a station's readings and averages, ascending, of all data types or of one.

        Raises
        ------
        ValueError
            For a line or station that the survey doesn't have.
        """
        self._require_open()
        return sorted({
            scan_rate for of_type, reduction, scan_rate, *_ in _brenlox.station_kinds(line, _station_text(station))
            if reduction != _REDUCTIONS["merged"] and data_type in (None, of_type)})

    def curve(self, line: str, station: float | str | Station, data_type: str, *, reduction: str = "merged", reference_type: int | None = None,
              dipole: float | None = None, scan_rate: float | None = None) -> Curve:
        """The merged curve of a station, or the average of one scan rate; computed if it is missing.

        Parameters
        ----------
        line : str
        station : float or str
            Number, or name of the site.
        data_type : {'ExHx', 'ExHy', 'EyHx', 'EyHy', 'HzHx', 'HzHy'}
        reduction : {'merged', 'averaged'}
        reference_type, dipole, scan_rate : optional
            Needed only where the line or the station has several; dipole m, scan rate Hz.

        Raises
        ------
        ValueError
            For what the survey doesn't have; it says what there is.
        brenlox.Error
            If the survey is closed or can't be read.
        """
        self._require_open()
        if reduction not in ("averaged", "merged"):
            raise ValueError(f"reduction: expected 'merged' or 'averaged', received {reduction!r}")
        query = _query(line, station, data_type, reference_type, dipole, scan_rate)
        return Curve(**_brenlox.curve(query, _REDUCTIONS[reduction]))

    def repeats(self, line: str, station: float | str | Station, data_type: str, *, reference_type: int | None = None,
                dipole: float | None = None, scan_rate: float | None = None) -> list[Curve]:
        """The raw readings of a station, by scan rate and event; parameters as of `curve`."""
        self._require_open()
        query = _query(line, station, data_type, reference_type, dipole, scan_rate)
        return [Curve(**row) for row in _brenlox.repeats(query)]

    def curves(self, line: str | None = None, station: float | str | Station | None = None,
               data_type: str | None = None, *,
               reduction: str = "merged", reference_type: int | None = None, dipole: float | None = None,
               scan_rate: float | None = None) -> list[Curve]:
        """All curves of the survey, or of what is given, read at once.

        Parameters
        ----------
        line, station, data_type, reference_type, dipole, scan_rate : optional
            As of `curve`; what is left out may be anything. A station needs its line.
        reduction : {'raw', 'averaged', 'merged'}
            Averages and merged curves are computed where they are missing.

        Returns
        -------
        list of Curve
            By line, station, reference type, dipole, data type, scan rate and event.
        """
        self._require_open()
        if reduction not in _REDUCTIONS:
            raise ValueError(f"reduction: expected 'raw', 'averaged' or 'merged', received {reduction!r}")
        if station is not None and line is None:
            raise ValueError("station: needs a line")
        text = None if station is None else _station_text(station)
        return [Curve(**row) for row in _brenlox.curves(
            _REDUCTIONS[reduction], line, text, data_type, reference_type, dipole, scan_rate)]

    def refresh(self, curve: Curve) -> Curve:
        """The curve as the survey has it now."""
        self._require_open()
        return Curve(**_brenlox.reading(curve.id))

    def to_dataframe(self, line: str | None = None, *, data_type: str | None = None, reduction: str = "merged",
                     reference_type: int | None = None, dipole: float | None = None) -> pandas.DataFrame:
        """A table with one row for each point of each curve; needs pandas.

        Columns are the arrays of `Curve`, what the reading is of, and ``resistivity_used`` and ``phase_used``:
        whether the value takes part in output. Parameters as of `curves`.
        """
        try:
            import pandas
        except ImportError:
            raise ImportError("A table needs pandas, which isn't installed") from None
        curves = self.curves(line, data_type=data_type, reduction=reduction, reference_type=reference_type,
                             dipole=dipole)
        lengths = [len(curve) for curve in curves]
        columns = {name: np.repeat(np.array([getattr(curve, name) for curve in curves], dtype=kind), lengths)
                   for name, kind in _FACTS.items()}
        for name in _ARRAYS:
            columns[name] = np.concatenate([getattr(curve, name) for curve in curves] or [np.empty(0)])
        used = [curve.masked() for curve in curves]
        for place, name in enumerate(("resistivity_used", "phase_used")):
            columns[name] = np.isfinite(np.concatenate([each[place] for each in used] or [np.empty(0)]))
        return pandas.DataFrame(columns)

    def mask(self, curves: Curve | Iterable[Curve], points: _Points = True, *, component: str = "both",
             progress: Callable[[float], object] | None = None) -> int:
        """Mask points of one curve or of many, as one command and in one transaction.

        Averages and merged curves follow where raw readings or averages are masked.

        Parameters
        ----------
        curves : Curve or iterable of Curve
        points : bool, array_like of bool of shape (n,), slice, or callable
            Which points; a function is called with each curve and gives one of the others.
        component : {'both', 'resistivity', 'phase'}
        progress : callable, optional
            Called with the share done; where it returns False, nothing is changed.

        Returns
        -------
        int
            Values newly masked; 0 after a stop.

        Raises
        ------
        brenlox.Error
            If the survey can't be written, or a curve isn't in it any more as it was read.

        Examples
        --------
        >>> survey.mask(survey.curves(data_type="ExHy"), lambda curve: curve.phase < 0, component="phase")
        """
        return self._set_points(curves, points, component, False, progress)

    def unmask(self, curves: Curve | Iterable[Curve], points: _Points = True, *, component: str = "both",
               progress: Callable[[float], object] | None = None) -> int:
        """Let points count again; parameters as of `mask`."""
        return self._set_points(curves, points, component, True, progress)

    def _set_points(self, curves, points, component, count, progress):
        self._require_open()
        _check_choice("component", component, ("both", "resistivity", "phase"))
        readings = []
        for curve in _listed(curves):
            chosen = _chosen(curve, points)
            none = np.zeros_like(chosen)
            readings.append((curve.id, curve.frequency, none if component == "phase" else chosen,
                             none if component == "resistivity" else chosen))
        return _brenlox.edit_points(readings, count, progress)

    def switch(self, curves: Curve | Iterable[Curve], use: bool, *, part: str = "reading",
               progress: Callable[[float], object] | None = None) -> int:
        """Switch readings, or their resistivities or phases, on or off as one command.

        Parameters
        ----------
        curves : Curve or iterable of Curve
        use : bool
        part : {'reading', 'resistivity', 'phase'}

        Returns
        -------
        int
            Readings that have changed.
        """
        self._require_open()
        _check_choice("part", part, ("reading", "resistivity", "phase"))
        return _brenlox.switch_readings([curve.id for curve in _listed(curves)], part, bool(use), progress)

    def set_static_factor(self, curves: Curve | Iterable[Curve], factor: float) -> int:
        """Set the factor on the resistivity of merged curves, as one command; gives how many have changed."""
        self._require_open()
        curves = _listed(curves)
        if not (1e-30 < factor < 1e30):
            raise ValueError(f"factor: expected a number above 0, received {factor!r}")
        if any(curve.reduction != _REDUCTIONS["merged"] for curve in curves):
            raise ValueError("curves: a static factor belongs to merged curves")
        return _brenlox.set_static_factors([curve.id for curve in curves], factor, None)

    @property
    def next_undo(self) -> Change | None:
        """What `undo` would take back."""
        self._require_open()
        return _change(_brenlox.next_command(False))

    @property
    def next_redo(self) -> Change | None:
        """What `redo` would do again."""
        self._require_open()
        return _change(_brenlox.next_command(True))

    def undo(self, *, progress: Callable[[float], object] | None = None) -> Change | None:
        """Take back the newest command of this session on masks, switches and factors.

        None without one, after a stop, which leaves everything as it was, and where all its readings are gone.
        """
        change = self.next_undo
        return change if _brenlox.exchange_command(False, progress) else None

    def redo(self, *, progress: Callable[[float], object] | None = None) -> Change | None:
        """Do again what was undone last; None as of `undo`."""
        change = self.next_redo
        return change if _brenlox.exchange_command(True, progress) else None

    def frequencies(self, reference_type: int | None = None) -> tuple[np.ndarray, np.ndarray]:
        """All frequencies of a reference type, Hz, and which are switched on: arrays of shape (n,).

        The reference type needn't be given where the survey has one.
        """
        reference_type, listed, enabled = self._frequencies(reference_type)
        return listed, enabled.astype(bool)

    def switch_frequencies(self, chosen: np.ndarray, use: bool, reference_type: int | None = None) -> None:
        """Switch frequencies on or off for graphs and output. This isn't undone by `undo`.

        Parameters
        ----------
        chosen : array_like of bool, shape (n,)
            For each of `frequencies`.
        """
        reference_type, listed, _ = self._frequencies(reference_type)
        chosen = np.asarray(chosen)
        if chosen.dtype != bool or chosen.shape != listed.shape:
            raise ValueError(f"chosen: expected bool of shape {listed.shape}, received {chosen.dtype} of {chosen.shape}")
        _brenlox.switch_frequencies(reference_type, chosen, bool(use))

    def _frequencies(self, reference_type):
        self._require_open()
        lists = _brenlox.frequency_lists()
        if reference_type is None and len(lists) == 1:
            reference_type = next(iter(lists))
        if reference_type not in lists:
            raise ValueError(f"reference_type: choose one of {', '.join(map(str, lists)) or 'none'}")
        return (reference_type, *lists[reference_type])

    def sign_of_ey(self, line: str, station: float | str | Station) -> str:
        """How the sign of a station's Ey is taken for its tensor: 'by rule', 'as measured' or 'turned'."""
        self._require_open()
        sign = _brenlox.sign_of_ey(line, _station_text(station))
        return next(name for name, value in _EY_SIGNS.items() if value == sign)

    def set_sign_of_ey(self, line: str, station: float | str | Station, sign: str) -> None:
        """Set what `sign_of_ey` gives. This isn't undone by `undo`."""
        self._require_open()
        _check_choice("sign", sign, tuple(_EY_SIGNS))
        _brenlox.set_sign_of_ey(line, _station_text(station), _EY_SIGNS[sign])

    def tensor(self, line: str, station: float | str | Station, *, reference_type: int | None = None, dipole: float | None = None) -> Tensor:
        """Impedance tensors of a station from its merged curves; Ey turned back, static factors included.

        Raises
        ------
        brenlox.Error
            If the station has no tensor; it says why.
        """
        found = self._station(line, station, reference_type, dipole)
        if found["refusal"]:
            raise _brenlox.Error(found["refusal"])
        return Tensor(**found["tensor"], axes=found["axes"], station=_name(found))

    def tipper(self, line: str, station: float | str | Station, *, reference_type: int | None = None, dipole: float | None = None) -> Tipper:
        """Tippers of a station; of length 0 where none was measured."""
        found = self._station(line, station, reference_type, dipole)
        return Tipper(**found["tipper"], axes=found["axes"])

    def tensors(self, line: str, *, reference_type: int | None = None,
                dipole: float | None = None) -> dict[float, Tensor]:
        """The tensors of a line's stations that have one, by station; reads the line once."""
        self._require_open()
        query = _query(line, "", "", reference_type, dipole, None)
        return {found["station"]: Tensor(**found["tensor"], axes=found["axes"], station=_name(found))
                for found in _brenlox.tensors(query) if not found["refusal"]}

    def _station(self, line, station, reference_type, dipole):
        self._require_open()
        return _brenlox.tensors(_query(line, station, "", reference_type, dipole, None))[0]

    def recalculate(self, *, progress: Callable[[float], object] | None = None) -> None:
        """Compute all averages and merged curves again. `progress` gets the share done and stops by False."""
        self._require_open()
        _brenlox.recalculate(progress)

    def import_files(self, paths: PathLike | Iterable[PathLike], *, auto: bool = True, dry_run: bool = False,
                     progress: Callable[[float], object] | None = None, **choices) -> ImportReport | ImportPlan:
        """Import field files and bring averages and merged curves of what they touch up to date.

        Parameters
        ----------
        paths : path-like or iterable of path-like
            Files, and folders to search for them.
        auto : bool
            Look into the files and choose what isn't given. Without it `reference_type`, and `line`, `event`, `rate`
            or their columns are required.
        dry_run : bool
            Give the plan, the rows that would be stored; nothing is.
        progress : callable, optional
            Called with the share done; stops between files where it returns False, and what was stored by then stays.
        **choices
            The fields of `brenlox.importing.ImportChoices`: line, reference_type, turn_ey, stations_by and so on.

        Returns
        -------
        ImportReport
            Files that can't be read are in it; they don't keep the others from being stored.
        ImportPlan
            With `dry_run`.

        Raises
        ------
        ValueError, FileNotFoundError
        brenlox.Error
            If nothing can be imported: no field file, a fault of the choices, a survey that can't be written.
        """
        self._require_open()
        chosen = ImportChoices(auto=auto, **choices)
        return (plan_import if dry_run else import_files)(paths, chosen, progress)

    def export(self, directory: PathLike, *, format: str, lines: str | Sequence[str] | None = None,
               reference_type: int | None = None, dipole: float | None = None, rotate: float | None = None, reduction: int | None = None,
               rhoplus: RhoplusSettings | bool = False, plot_link: str | None = None, overwrite: bool = False,
               progress: Callable[[float], object] | None = None) -> ExportReport:
        """Write curves, tensors and places of stations as files that other packages read.

        Parameters
        ----------
        directory : path-like
            Is made if it is missing.
        format : {'edi', 'emtfxml', 'csv', 'geojson', 'kml'}
            EDI and EMTF XML: a file for each station; CSV: tables of a line; GeoJSON and KML: places for maps.
        lines : str or sequence of str, optional
            All by default.
        reference_type, dipole : optional
            Needed only where a line has several; dipole m.
        rotate : float, optional
            Azimuth of x, degrees from north, that merged curves and tippers are rotated to.
        reduction : {0, 1, 2}, optional
            Curves of CSV: raw, averaged or merged (the default).
        rhoplus : RhoplusSettings or bool
            CSV: the best fit of any layered earth to ExHy and EyHx as well.
        plot_link : str, optional
            GeoJSON, KML: link of each station, with {line}, {station} and {name} in it.
        overwrite : bool
            Replace files that exist.
        progress : callable, optional
            Called with the share done; stops between stations where it returns False.

        Raises
        ------
        ValueError
        brenlox.Error
            If there is nothing to write, a file exists and `overwrite` is False, or one can't be written.
        """
        self._require_open()
        return exporting.export(directory, format, lines, reference_type, dipole, rotate, reduction, rhoplus,
                                plot_link, overwrite, progress)

    def write_zonge(self, path: PathLike, line: str, data_type: str, *, reference_type: int | None = None,
                    dipole: float | None = None, overwrite: bool = False,
                    progress: Callable[[float], object] | None = None) -> ZongeFiles | None:
        """Write the merged curves of a line as a Zonge AVG set: .avg, .mde and .stn.

        `path` is that of the .avg file; the others go beside it. None if `progress` has stopped it: nothing is written
        then. Parameters as of `export`; brenlox.Error if a file exists and `overwrite` is False.
        """
        self._require_open()
        query = _query(line, "", exporting.data_type(data_type), reference_type, dipole, None)
        return exporting.write_zonge(path, query, overwrite, progress)

    def write_rhoplus(self, directory: PathLike, line: str, data_type: str, *, reference_type: int | None = None,
                      dipole: float | None = None, settings: RhoplusSettings | None = None, root: str = "tmd",
                      include_empty: bool = False, rotate: float | None = None,
                      progress: Callable[[float], object] | None = None) -> RhoplusFiles:
        """Write the merged curves of a line as Rho+ control files, with the batch file that runs them.

        Parameters
        ----------
        directory : path-like
            Is made if it is missing; earlier files of the same names are replaced.
        settings : RhoplusSettings, optional
        root : str
            First part of the file names.
        include_empty : bool
            Write frequencies with no data as well.
        rotate : float, optional
            Azimuth of the strike, degrees from north, that the tensors are rotated to.
        """
        self._require_open()
        query = _query(line, "", exporting.data_type(data_type), reference_type, dipole, None)
        return exporting.write_rhoplus(directory, query, settings, root, include_empty, rotate, progress)

    def create_run(self, directory: PathLike, line: str, *, overwrite: bool = False,
                   progress: Callable[[float], object] | None = None, **choices) -> occam.Run | None:
        """Make a run directory of the two-dimensional inversion from the merged curves of a line.

        Parameters
        ----------
        directory : path-like
            Is made if it is missing.
        line : str
        overwrite : bool
            An earlier inversion in the folder moves into earlier_1; without it that is an error.
        progress : callable, optional
            Called with the share done; nothing is written where it returns False.
        **choices
            The fields of `brenlox.runs.RunChoices`: modes, floors of errors, layers, blocks, stations and so on.

        Returns
        -------
        brenlox.occam.Run
            What there was to be told is in its `created`. None if `progress` has stopped it.
        """
        self._require_open()
        return runs.create_run(directory, line, RunChoices(**choices), overwrite, progress)


def _name(found) -> str:
    return found["name"] or f"{found['station']:g}"


def _station_text(station) -> str:
    if isinstance(station, Station):
        station = station.number
    return station if isinstance(station, str) else repr(float(station))


def _check_choice(name, given, choices):
    if given not in choices:
        raise ValueError(f"{name}: expected {' or '.join(map(repr, choices))}, received {given!r}")


def _listed(curves) -> list[Curve]:
    return [curves] if isinstance(curves, Curve) else list(curves)


def _chosen(curve: Curve, points) -> np.ndarray:
    """Which points of a curve, shape (n,)."""
    if callable(points):
        points = points(curve)
    chosen = np.zeros(len(curve), dtype=bool)
    if isinstance(points, slice):
        chosen[points] = True
        return chosen
    points = np.asarray(points)
    if points.dtype != bool or points.shape not in ((), chosen.shape):
        raise ValueError(f"points: expected bool of shape {chosen.shape}, received {points.dtype} of {points.shape}")
    chosen[:] = points
    return chosen


def _change(command) -> Change | None:
    return None if command is None else Change(command[0], tuple(command[1]))


def _query(line, station, data_type, reference_type, dipole, scan_rate):
    return _brenlox.CurveQuery(line, _station_text(station), data_type, reference_type, dipole, scan_rate)


def create_survey(path: str | os.PathLike[str]) -> Survey:
    """Create an empty survey and open it; see `brenlox.create`."""
    text = os.path.abspath(path)
    if ".MDB" not in text.upper():
        raise ValueError(f"path: the name of a survey must end in .mdb, received {os.fspath(path)!r}")
    if os.path.exists(text):
        raise FileExistsError(17, "The specified file already exists", text)
    _brenlox.create_survey(text)
    return Survey(text)


_Points = Union[bool, slice, np.ndarray, Callable[[Curve], Union[bool, slice, np.ndarray]]]
_EY_SIGNS = {"by rule": 0, "as measured": 1, "turned": -1}
_FACTS = {"line": object, "station": float, "data_type": object, "reference_type": int, "dipole": float,
          "scan_rate": float, "event": int, "id": int, "static_factor": float, "phase_offset": float}
_ARRAYS = [each.name for each in fields(Curve) if each.type == "np.ndarray"]
