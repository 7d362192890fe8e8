"""Compiled part of brenlox; use the package."""

from typing import Any, Callable, Optional

import numpy as np
from numpy.typing import NDArray

_Real = NDArray[np.float64]
_Complex = NDArray[np.complex128]
_Integer = NDArray[np.int32]
_Progress = Optional[Callable[[float], object]]

__version__: str

class Error(Exception): ...

# Rho+

def rhoplus(
    frequency: _Real,
    resistivity: _Real,
    phase: _Real,
    resistivity_error: _Real,
    phase_error: _Real,
    conducting: bool,
) -> dict[str, Any]: ...

# Tensors and tippers

def rotated_tensors(z: _Complex, covariance: _Real, degrees: float) -> tuple[_Complex, _Real]: ...
def phase_tensors(z: _Complex, covariance: _Real) -> dict[str, _Real]: ...
def dimensions(
    z: _Complex, covariance: _Real, skew_limit: float, least_ellipticity: float, use_errors: bool
) -> _Integer: ...
def tensor_quantities(frequency: _Real, z: _Complex, covariance: _Real) -> dict[str, _Real]: ...
def rotated_tippers(t: _Complex, covariance: _Real, degrees: float) -> tuple[_Complex, _Real]: ...
def induction_arrows(
    t: _Complex, covariance: _Real, wiese: bool, imaginary_reversed: bool
) -> dict[str, _Real]: ...

class StrikeLine:
    def __init__(self) -> None: ...
    def add_tensors(self, frequency: _Real, z: _Complex, covariance: _Real, axes: float) -> None: ...
    def add_tippers(self, frequency: _Real, t: _Complex, covariance: _Real, axes: float) -> None: ...
    def strikes(
        self,
        lowest: float,
        highest: float,
        by_decade: bool,
        method: str,
        weighted: bool,
        skew_limit: float,
        least_ellipticity: float,
    ) -> list[dict[str, Any]]: ...

# Layered ground

def layered_impedance(resistivity: _Real, thickness: _Real, frequency: _Real) -> _Complex: ...
def niblett_bostick(
    frequency: _Real, resistivity: _Real, phase: _Real, resistivity_error: _Real, phase_error: _Real
) -> dict[str, _Real]: ...

# Sections

class Section:
    def __init__(
        self,
        left_edge: float,
        column_widths: _Real,
        row_heights: _Real,
        resistivity: _Real,
        codes: _Integer,
    ) -> None: ...

def section_response(
    section: Section, sites: _Real, frequencies: _Real, threads: int, progress: _Progress
) -> dict[str, _Real]: ...
def section_jacobian(
    section: Section,
    sites: _Real,
    frequencies: _Real,
    parameters: _Integer,
    parameter_count: int,
    threads: int,
    progress: _Progress,
) -> dict[str, _Real]: ...
def section_tipper(
    section: Section, sites: _Real, frequencies: _Real, threads: int, progress: _Progress
) -> Optional[_Complex]: ...
def section_warnings(section: Section, sites: _Real, frequencies: _Real) -> list[str]: ...

# The open survey

class CurveQuery:
    def __init__(
        self,
        line: str,
        station: str,
        data_type: str,
        reference_type: Optional[int],
        dipole: Optional[float],
        scan_rate: Optional[float],
    ) -> None: ...

def open_survey(path: str, read_only: bool) -> None: ...
def close_survey() -> None: ...
def messages() -> list[str]: ...
def lines() -> list[str]: ...
def stations() -> list[dict[str, Any]]: ...
def kinds(line: str) -> list[tuple[int, float]]: ...
def curve(query: CurveQuery, reduction: int) -> dict[str, Any]: ...
def repeats(query: CurveQuery) -> list[dict[str, Any]]: ...
def tensors(query: CurveQuery) -> list[dict[str, Any]]: ...
def recalculate(progress: _Progress) -> None: ...
