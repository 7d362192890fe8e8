"""Making a run directory of the two-dimensional inversion from a line of the open survey."""

from __future__ import annotations

import os
from dataclasses import dataclass, fields
from typing import Callable

from . import _brenlox, occam
from .exporting import azimuth, data_type

_SWITCHES = {"reference_type", "dipole", "data_type", "relative_errors", "by_distance", "standard_deviation",
             "rhoplus_errors", "apply_static", "file_errors", "rotate"}


@dataclass(frozen=True)
class RunChoices:
    """How a run is made; None keeps the usual value.

    Parameters
    ----------
    data_type : str, optional
        'ExHy' or another one: a run of this alone, EyHx as TE and others as TM. By default both modes: TE from EyHx
        and TM from ExHy.
    reference_type, dipole : optional
        Needed only where the line has several; dipole m.
    iterations : int
        Most of the inversion (20).
    target_rms : float
        Misfit at which it stops (1.2).
    resistivity_floor : float
        Minimum error of a resistivity, percent (5).
    phase_floor : float
        Minimum error of a phase (5): degrees with relative errors, else percent of the phase.
    te_resistivity_floor, te_phase_floor : float
        The same of TE in a run of both modes; as TM by default.
    relative_errors : bool
        The same share of every resistivity, and phase floors in degrees; the default for both modes. Without it a
        resistivity's error grows with the size of its logarithm.
    layers : int
        Of the model, the padding at the bottom included (24).
    layers_per_decade : float
        Of depth (8).
    top_layer : float
        Thickness, m (20).
    block_width : float
        Between stations, m (100).
    doubling_threshold : float
        Two blocks are joined where they are narrower than the layer's thickness over this (2).
    initial_resistivity : float
        Of the starting model, ohm-m (100).
    first_station, last_station : float
        Those that take part.
    by_distance : bool
        Positions along the line from the places of the sites, not from station numbers.
    standard_deviation : bool
        Errors of resistivities as standard deviations, not by the standard error formula.
    rhoplus_errors : bool
        The misfit of one-dimensional inversion adds to the errors.
    apply_static : bool
        Include static shift corrections.
    file_errors : bool
        Raise errors to those of the files where these are larger.
    rotate : float
        Azimuth of the strike, degrees from north, that the tensors are rotated to.
    model_file, data_file : str
        Names of the files (inmodel, occamdat).
    description : str
        Title of the files.
    subdirectory : str
        Folder to create in the directory for the files.
    """

    data_type: str | None = None
    reference_type: int | None = None
    dipole: float | None = None
    iterations: int | None = None
    target_rms: float | None = None
    resistivity_floor: float | None = None
    phase_floor: float | None = None
    te_resistivity_floor: float | None = None
    te_phase_floor: float | None = None
    relative_errors: bool | None = None
    layers: int | None = None
    layers_per_decade: float | None = None
    top_layer: float | None = None
    block_width: float | None = None
    doubling_threshold: float | None = None
    initial_resistivity: float | None = None
    first_station: float | None = None
    last_station: float | None = None
    by_distance: bool = False
    standard_deviation: bool = False
    rhoplus_errors: bool = True
    apply_static: bool = True
    file_errors: bool = False
    rotate: float | None = None
    model_file: str | None = None
    data_file: str | None = None
    description: str | None = None
    subdirectory: str | None = None

    def __post_init__(self):
        if self.data_type is not None:
            data_type(self.data_type)
            for name in ("te_resistivity_floor", "te_phase_floor"):
                if getattr(self, name) is not None:
                    raise ValueError(f"{name}: is for a run of both modes")
        if self.rotate is not None:
            azimuth("rotate", self.rotate)

    def entries(self) -> dict[str, str]:
        """What is typed in the window, by name."""
        given = {each.name: getattr(self, each.name) for each in fields(self) if each.name not in _SWITCHES}
        return {name: value if isinstance(value, str) else f"{value:.15g}"
                for name, value in given.items() if value is not None}

    def switches(self) -> _brenlox.RunSwitches:
        """The rest, for the compiled part."""
        switches = _brenlox.RunSwitches()
        switches.both_modes = self.data_type is None
        switches.rotation = self.rotate
        for name in ("relative_errors", "by_distance", "standard_deviation", "rhoplus_errors", "apply_static",
                     "file_errors"):
            setattr(switches, name, getattr(self, name))
        return switches


def create_run(directory: str | os.PathLike[str], line: str, choices: RunChoices, overwrite: bool,
               progress: Callable[[float], object] | None) -> occam.Run | None:
    """Make the run directory; see `brenlox.Survey.create_run`."""
    # In a run of both modes the data type says nothing but which line and dipole there are.
    query = _brenlox.CurveQuery(line, "", choices.data_type or "", choices.reference_type, choices.dipole, None)
    folder, told = _brenlox.create_run(query, os.path.abspath(directory), choices.entries(), choices.switches(),
                                       overwrite, progress)
    if folder is None:
        return None
    run = occam.Run(folder)
    run.created = told
    return run
