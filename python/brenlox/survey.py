"""The survey database: readings, curves and tensors of stations."""

from __future__ import annotations

import os
from dataclasses import dataclass, field, fields
from typing import Callable

import numpy as np

from . import _brenlox
from .tensors import Tensor, Tipper

_REDUCTIONS = {"averaged": 1, "merged": 2}


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


class Survey:
    """An open survey; use `brenlox.open`. Closed by `close`, or at the end of a ``with`` block."""

    def __init__(self, path, read_only=False):
        self._path = os.fspath(path)
        if not os.path.exists(self._path):
            raise FileNotFoundError(f"The specified file does not exist: {self._path}")
        _brenlox.open_survey(self._path, read_only)
        self._open = True
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
            _brenlox.close_survey()

    def _require_open(self):
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

    def stations(self, line: str | None = None) -> list[dict]:
        """Stations with line, number, name of the site, map place (m) and latitude, longitude, elevation."""
        self._require_open()
        return [row for row in _brenlox.stations() if line is None or row["line"].upper() == line.upper()]

    def kinds(self, line: str) -> list[tuple[int, float]]:
        """Reference types and dipole lengths (m) of a line's readings."""
        self._require_open()
        return _brenlox.kinds(line)

    def curve(self, line: str, station: float | str, data_type: str, *, reduction: str = "merged", reference_type: int | None = None,
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
        if reduction not in _REDUCTIONS:
            raise ValueError(f"reduction: expected 'merged' or 'averaged', received {reduction!r}")
        query = _query(line, station, data_type, reference_type, dipole, scan_rate)
        return Curve(**_brenlox.curve(query, _REDUCTIONS[reduction]))

    def repeats(self, line: str, station: float | str, data_type: str, *, reference_type: int | None = None,
                dipole: float | None = None, scan_rate: float | None = None) -> list[Curve]:
        """The raw readings of a station, by scan rate and event; parameters as of `curve`."""
        self._require_open()
        query = _query(line, station, data_type, reference_type, dipole, scan_rate)
        return [Curve(**row) for row in _brenlox.repeats(query)]

    def tensor(self, line: str, station: float | str, *, reference_type: int | None = None, dipole: float | None = None) -> Tensor:
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

    def tipper(self, line: str, station: float | str, *, reference_type: int | None = None, dipole: float | None = None) -> Tipper:
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


def _name(found) -> str:
    return found["name"] or f"{found['station']:g}"


def _query(line, station, data_type, reference_type, dipole, scan_rate):
    text = station if isinstance(station, str) else repr(float(station))
    return _brenlox.CurveQuery(line, text, data_type, reference_type, dipole, scan_rate)
