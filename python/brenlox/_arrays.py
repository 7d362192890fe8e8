"""Arguments as arrays of the kind that the compiled module takes in place, without a silent loss."""

from __future__ import annotations

import numpy as np
from numpy.typing import ArrayLike

_REAL = "biuf"
_COMPLEX = _REAL + "c"


def _numbers(name: str, values: ArrayLike, kinds: str, dtype: type, what: str) -> np.ndarray:
    if isinstance(values, np.ma.MaskedArray):
        values = values.astype(dtype).filled(np.nan)  # what is masked isn't there
    array = np.asarray(values)
    if array.dtype.kind == "O":  # None where there is nothing, as tables have it
        try:
            array = array.astype(dtype)
        except (TypeError, ValueError):
            raise TypeError(f"{name}: expected {what}, received objects that are none") from None
    if array.dtype.kind not in kinds:
        raise TypeError(f"{name}: expected {what}, received {array.dtype}")
    return np.require(array, dtype, "CA")


def real(name: str, values: ArrayLike) -> np.ndarray:
    """The values as float64 in C order; the array itself if it is one."""
    return _numbers(name, values, _REAL, np.float64, "real numbers")


def complex_numbers(name: str, values: ArrayLike) -> np.ndarray:
    """The values as complex128 in C order; the array itself if it is one."""
    return _numbers(name, values, _COMPLEX, np.complex128, "numbers")


def integers(name: str, values: ArrayLike) -> np.ndarray:
    """The values as int32 in C order."""
    array = np.asarray(values)
    if array.size and array.dtype.kind not in "biu":
        raise TypeError(f"{name}: expected integers, received {array.dtype}")
    limits = np.iinfo(np.int32)
    if array.size and (array.min() < limits.min or array.max() > limits.max):
        raise ValueError(f"{name}: expected integers of 32 bits, received {array.min()} to {array.max()}")
    return np.require(array, np.int32, "CA")


def check_shape(name: str, array: np.ndarray, *shape: int | None) -> None:
    """Raise ValueError unless the array has this shape; None is any length."""
    fits = array.ndim == len(shape) and all(
        wanted is None or wanted == length for wanted, length in zip(shape, array.shape))
    if not fits:
        lengths = ["n" if wanted is None else str(wanted) for wanted in shape]
        expected = f"({lengths[0]},)" if len(lengths) == 1 else f"({', '.join(lengths)})"
        raise ValueError(f"{name}: expected shape {expected}, received {array.shape}")
