"""Two-dimensional inversion: run directories, their inversion, models and responses.

    run = brenlox.occam.Run("run_200E")
    run.invert(iterations=10, progress=print)
    run.model().plot()
"""

from __future__ import annotations

import os
from dataclasses import dataclass, field
from functools import lru_cache
from typing import TYPE_CHECKING, Callable

import numpy as np

from . import _brenlox
from .section import Section

if TYPE_CHECKING:
    from matplotlib.axes import Axes

_SEARCHES = ("better", "classic")


@dataclass(frozen=True)
class Iteration:
    """The head of an iteration file.

    Attributes
    ----------
    number : int
    rms : float
        Misfit: root mean square of the residuals in units of their errors.
    roughness : float
    multiplier : float
        Lagrange multiplier as the file has it, its log10.
    file : str
        Name in the run directory.
    """

    number: int
    rms: float
    roughness: float
    multiplier: float
    file: str

    def __str__(self) -> str:
        return f"iteration {self.number}: RMS {self.rms:.4f}, roughness {self.roughness:.3f}"


@dataclass(frozen=True)
class InversionStep:
    """An iteration that has ended; its files are in place.

    Attributes
    ----------
    iteration : int
        0, or that of the start, is the start itself.
    rms, roughness : float
    log10_multiplier : float
    change : float
        Root mean square of the model's change, decades.
    trials : int
        Responses that the search took.
    seconds : float
    """

    iteration: int
    rms: float
    roughness: float
    log10_multiplier: float
    change: float
    trials: int
    seconds: float

    def __str__(self) -> str:
        return (f"iteration {self.iteration:2d}: RMS {self.rms:.4f}, roughness {self.roughness:.3f}, "
                f"log10 multiplier {self.log10_multiplier:.3f}, {self.trials} trials, {self.seconds:.1f} s")


@dataclass(frozen=True)
class InversionReport:
    """The course of an inversion.

    Attributes
    ----------
    ending : {'smooth_and_fitting', 'perfectly_smooth', 'iterations_done', 'no_better_fit', 'stopped'}
    reason : str
        Why it ended, a sentence.
    steps : list of InversionStep
    target_rms : float
    earlier_folder : str
        In the run directory, where an earlier inversion has moved; empty if none has.
    """

    ending: str
    reason: str
    steps: list[InversionStep]
    target_rms: float
    earlier_folder: str

    def __str__(self) -> str:
        return self.reason


class _Rows:
    """What observed and modelled data have in common."""

    type: np.ndarray
    datum: np.ndarray

    def __len__(self) -> int:
        return len(self.datum)

    @property
    def mode(self) -> np.ndarray:
        """'TE' or 'TM' of each row."""
        return _names_of(self.type)[0]

    @property
    def quantity(self) -> np.ndarray:
        """'log10_resistivity', 'phase' or what else a row holds."""
        return _names_of(self.type)[1]


@dataclass(frozen=True, eq=False)
class Data(_Rows):
    """Rows of the data file, in arrays of shape (n,).

    Attributes
    ----------
    site, frequency : ndarray of int
        Indices from 0 of `Run.site_names` and `Run.frequencies`.
    type : ndarray of int
        As the file numbers what a row holds.
    datum, error : ndarray
        log10 ohm-m or degrees for the usual types.
    """

    site: np.ndarray
    frequency: np.ndarray
    type: np.ndarray
    datum: np.ndarray
    error: np.ndarray


@dataclass(frozen=True, eq=False)
class Blocks:
    """The blocks of a model, layer by layer from the left, in arrays of shape (b,).

    Attributes
    ----------
    left, right, top, bottom : ndarray
        m.
    log10_resistivity : ndarray
        log10 ohm-m; NaN of a fixed block.
    layer : ndarray of int
    parameter : ndarray of int
        Index in `Model.parameters`; -1 of a fixed block.
    """

    left: np.ndarray
    right: np.ndarray
    top: np.ndarray
    bottom: np.ndarray
    log10_resistivity: np.ndarray
    layer: np.ndarray
    parameter: np.ndarray

    def __len__(self) -> int:
        return len(self.left)


@dataclass(frozen=True, eq=False)
class Model:
    """The model of an iteration.

    Attributes
    ----------
    run : Run
    iteration : Iteration
    parameters : ndarray, shape (p,)
        log10 ohm-m of the free blocks.
    blocks : Blocks
    node_x, node_z : ndarray, shape (columns + 1,), (rows + 1,)
        Node lines of the mesh: m along the line, and depth, m.
    resistivity : ndarray, shape (rows, columns, 4)
        ohm-m of the triangles top, left, bottom, right of each rectangle of the mesh.
    codes : ndarray of int, shape (rows, columns, 4)
        0 air, -1 sea water, or which resistivity of the table.
    static_shifts : dict
        Decades by name of the site and mode.
    """

    run: Run = field(repr=False)
    iteration: Iteration
    parameters: np.ndarray = field(repr=False)
    blocks: Blocks = field(repr=False)
    node_x: np.ndarray = field(repr=False)
    node_z: np.ndarray = field(repr=False)
    resistivity: np.ndarray = field(repr=False)
    codes: np.ndarray = field(repr=False)
    static_shifts: dict[tuple[str, str], float] = field(repr=False)
    _section: Section = field(repr=False)

    @property
    def rms(self) -> float:
        """Misfit of the iteration."""
        return self.iteration.rms

    @property
    def roughness(self) -> float:
        """Of the iteration."""
        return self.iteration.roughness

    def section(self) -> Section:
        """The model on its mesh, for `brenlox.section.response`; static shifts aren't in it."""
        return self._section

    def plot(self, ax: Axes | None = None, **options) -> Axes:
        """Draw the model with its sites; options as of `brenlox.plots.plot_section`.

        Returns
        -------
        matplotlib.axes.Axes
        """
        options.setdefault("sites", self.run.site_offsets)
        options.setdefault("site_names", self.run.site_names)
        options.setdefault("title", f"{self.run.title or os.path.basename(self.run.path)}, iteration "
                                    f"{self.iteration.number}: RMS {self.rms:.3f}")
        return self._section.plot(ax, **options)


@dataclass(frozen=True, eq=False)
class Response(_Rows):
    """Observed and modelled data of an iteration, in arrays of shape (n,).

    Attributes
    ----------
    run : Run
    iteration : Iteration
    site, frequency, type : ndarray of int
        As of `Data`.
    datum, modelled : ndarray
    residual : ndarray
        Datum less modelled value.
    misfit : ndarray
        Residual over the error of the datum.
    """

    run: Run = field(repr=False)
    iteration: Iteration
    site: np.ndarray = field(repr=False)
    frequency: np.ndarray = field(repr=False)
    type: np.ndarray = field(repr=False)
    datum: np.ndarray = field(repr=False)
    modelled: np.ndarray = field(repr=False)
    residual: np.ndarray = field(repr=False)
    misfit: np.ndarray = field(repr=False)

    @property
    def frequencies(self) -> np.ndarray:
        """Hz of each row."""
        return self.run.frequencies[self.frequency]

    @property
    def error(self) -> np.ndarray:
        """Error of each datum, from the data of the run; NaN for a row that these don't have."""
        data = self.run.data
        known = dict(zip(zip(data.site.tolist(), data.frequency.tolist(), data.type.tolist()), data.error.tolist()))
        places = zip(self.site.tolist(), self.frequency.tolist(), self.type.tolist())
        return np.array([known.get(place, np.nan) for place in places], dtype=float)

    @property
    def rms(self) -> float:
        """Root mean square of the misfits."""
        return float(np.sqrt(np.mean(np.square(self.misfit)))) if len(self) else float("nan")

    def rms_by_site(self) -> np.ndarray:
        """RMS of each site of the run, shape (sites,); NaN of one without data."""
        count = len(self.run.site_names)
        rows = np.bincount(self.site, minlength=count)
        squares = np.bincount(self.site, weights=np.square(self.misfit), minlength=count)
        return np.sqrt(np.divide(squares, rows, out=np.full(count, np.nan), where=rows > 0))

    def plot(self, site: int | str, axes: tuple[Axes, Axes] | None = None) -> tuple[Axes, Axes]:
        """Draw the curves of a site; see `brenlox.plots.plot_response`."""
        from . import plots

        return plots.plot_response(self, site, axes)


class Run:
    """A run directory of the two-dimensional inversion.

    Sites, data and model are read once; iterations are looked for each time, so that those of an inversion that is
    still running appear. No survey has to be open, and threads may use runs side by side.

    Parameters
    ----------
    path : path-like
        The directory.
    control : str, optional
        Name of the file that names model and data, if it is neither startup nor an iteration file.

    Raises
    ------
    FileNotFoundError
    brenlox.Error
        For a directory without a run, or files that can't be read; it names the file.
    """

    def __init__(self, path: str | os.PathLike[str], control: str = ""):
        text = os.fspath(path)
        if not os.path.isdir(text):
            raise FileNotFoundError(2, "There is no such folder", text)
        self._run = _brenlox.OccamRun(text, control)
        data = self._run.data()
        self._title = data.pop("title")
        self._site_names = data.pop("site_names")
        self._site_offsets = data.pop("site_offsets")
        self._frequencies = data.pop("frequencies")
        self._data = Data(**data)
        #: What was to be told when `brenlox.Survey.create_run` made it.
        self.created: list[str] = []

    def __repr__(self) -> str:
        return f"Run({self.path!r}, {len(self._site_names)} sites, {len(self._data)} data)"

    @property
    def path(self) -> str:
        """The directory."""
        return self._run.folder

    @property
    def title(self) -> str:
        """Of the data file."""
        return self._title

    @property
    def site_names(self) -> list[str]:
        """Names of the sites, in the order of the data file."""
        return list(self._site_names)

    @property
    def site_offsets(self) -> np.ndarray:
        """Positions of the sites along the line, m, shape (sites,)."""
        return self._site_offsets

    @property
    def frequencies(self) -> np.ndarray:
        """Hz, shape (f,), in the order of the data file."""
        return self._frequencies

    @property
    def data(self) -> Data:
        """The data with their errors."""
        return self._data

    def site_index(self, site: int | str) -> int:
        """Index from 0 of a site, given by it or by the name. ValueError if there is none."""
        if isinstance(site, str):
            if site not in self._site_names:
                raise ValueError(f"site: there is no site {site!r}; there are {', '.join(self._site_names)}")
            return self._site_names.index(site)
        if not 0 <= site < len(self._site_names):
            raise ValueError(f"site: expected an index from 0 to {len(self._site_names) - 1}, received {site!r}")
        return int(site)

    @property
    def iterations(self) -> list[Iteration]:
        """The iterations there are now, by number; files that can't be read are left out."""
        return [Iteration(**head) for head in self._run.iterations()[0]]

    @property
    def remarks(self) -> list[str]:
        """What is wrong with iteration files there are now."""
        return self._run.iterations()[1]

    def model(self, iteration: int | None = None) -> Model:
        """The model of an iteration; without a number the last one.

        Raises
        ------
        brenlox.Error
            For an iteration that has no file, or one that can't be read or is of another model.
        """
        found = self._run.model(iteration)
        section = Section(found.pop("left_edge"), found.pop("column_widths"), found.pop("row_heights"),
                          found["resistivity"], found["codes"], found.pop("host_layers"))
        blocks = Blocks(**found.pop("blocks"))
        head = Iteration(**found.pop("iteration"))
        return Model(run=self, iteration=head, blocks=blocks, _section=section, **found)

    def response(self, iteration: int | None = None, *, compute: bool = False,
                 progress: Callable[[float], object] | None = None) -> Response | None:
        """Observed and modelled data of an iteration; without a number of the last one.

        Parameters
        ----------
        iteration : int, optional
        compute : bool
            Compute the response here rather than read the file that the inversion has left. Without a file it is
            computed, too. Nothing is written.
        progress : callable, optional
            Called with the share done while the response is computed; it stops where this returns False.

        Returns
        -------
        Response
            Static shifts included. None if `progress` has stopped it.
        """
        found = self._run.response(iteration, compute, progress)
        if found is None:
            return None
        return Response(run=self, iteration=Iteration(**found.pop("iteration")), **found)

    def misfit(self, iteration: int | None = None) -> dict[str, float]:
        """RMS of each site's data by its name; without a number of the last iteration."""
        response = self.response(iteration)
        assert response is not None  # nothing stops it
        return dict(zip(self._site_names, response.rms_by_site().tolist()))

    def invert(
        self,
        *,
        iterations: int | None = None,
        target_rms: float | None = None,
        start: str = "",
        go_on: bool = False,
        overwrite: bool = False,
        roughness_type: int | None = None,
        search: str = "better",
        huber: bool = False,
        static_shift: float | None = None,
        threads: int = 0,
        progress: Callable[[InversionStep], object] | None = None,
    ) -> InversionReport:
        """Invert the run: the smoothest model that fits its data.

        Iterations, responses and the log go into the directory, each when it is done: after a stop, or Ctrl+C, those
        that have ended stay, and `go_on` continues.

        Parameters
        ----------
        iterations : int, optional
            How many to run, in place of the file's number.
        target_rms : float, optional
            In place of the file's.
        start : str
            Start or iteration file to begin with; the start file by default.
        go_on : bool
            Go on from the iteration file with the highest number.
        overwrite : bool
            Iterations of an earlier inversion that would be replaced move into earlier_1, earlier_2 and so on.
        roughness_type : int, optional
            1, 3, 4, 101 to 199 or 201 to 299.
        search : {'better', 'classic'}
            Over multiplier and step length.
        huber : bool
            Residuals beyond 1.5 errors count linearly.
        static_shift : float, optional
            Decades: an unknown static shift for each site and mode, drawn to 0 with this error.
        threads : int
            0: as many as there are cores. The result doesn't depend on it.
        progress : callable, optional
            Called with an `InversionStep` after each iteration, and for the start; `print` prints them. The inversion
            stops where it returns False, or at the next response after Ctrl+C.

        Returns
        -------
        InversionReport

        Raises
        ------
        brenlox.Error
            For a run that can't be inverted, one that is being inverted, or where iterations are in the way; nothing
            is written then.
        KeyboardInterrupt
            After Ctrl+C.

        Notes
        -----
        Constable, Parker & Constable (1987), Geophysics 52, 289-300; de Groot-Hedlin & Constable (1990), Geophysics
        55, 1613-1624.
        """
        if search not in _SEARCHES:
            raise ValueError(f"search: expected 'better' or 'classic', received {search!r}")
        if start and go_on:
            raise ValueError("start: give either start or go_on")
        if iterations is not None and iterations < 1:
            raise ValueError(f"iterations: expected a number from 1 on, received {iterations!r}")
        for name, number in (("target_rms", target_rms), ("static_shift", static_shift)):
            if number is not None and not 0.0 < number < float("inf"):
                raise ValueError(f"{name}: expected a number above 0, received {number!r}")
        if roughness_type is not None and not (
                roughness_type in (1, 3, 4) or 100 < roughness_type < 200 or 200 < roughness_type < 300):
            raise ValueError("roughness_type: the roughness types are 1, 3, 4, 101 to 199 and 201 to 299")
        options = _brenlox.InversionOptions()
        options.start, options.go_on, options.may_move_earlier = start, go_on, overwrite
        options.iterations, options.target_rms = iterations, target_rms
        options.roughness_type, options.static_shift = roughness_type, static_shift
        options.robust, options.threads = huber, threads
        if search == "classic":
            options.set_classic_search()
        told = None if progress is None else lambda step: progress(InversionStep(**step))
        report = _brenlox.invert_run(self.path, options, told)
        report["steps"] = [InversionStep(**step) for step in report["steps"]]
        return InversionReport(**report)


@lru_cache(maxsize=None)
def _name_of(number: int) -> tuple[str, str]:
    """Mode and quantity of a data type."""
    return _brenlox.data_type_names(number)


def _names_of(types: np.ndarray) -> tuple[np.ndarray, np.ndarray]:
    known, places = np.unique(types, return_inverse=True)
    names = np.array([_name_of(int(number)) for number in known], dtype=object).reshape(-1, 2)
    return names[places, 0], names[places, 1]
