"""Arrays of records from plain coordinates, and back."""
from __future__ import annotations

from typing import TYPE_CHECKING, Any

import numpy as np

from scanline import _core

if TYPE_CHECKING:
    from collections.abc import Iterable, Iterator

    from numpy.typing import ArrayLike, NDArray

_POSITION = _core.STesk3DPosition.dtype
LEAST_DISTANCE = 0.0001  # as in the library: what is not above is no measurement


def as_line(y: ArrayLike, z: ArrayLike, x: ArrayLike = 0.0) -> NDArray[np.void]:
    """Return a line of samples from the coordinates along it, with `nPointIdx` as the index.

    `y` and `z` are arrays of the same length; `x` is one number or an array of that length. A
    height of NaN becomes a missing sample, z = 0.
    """
    y, z = np.asarray(y, dtype=float), np.asarray(z, dtype=float)
    if y.ndim != 1 or y.shape != z.shape:
        raise ValueError(f"z: expected an array of the shape of y, {y.shape}, got {z.shape}")
    coordinates = np.stack(np.broadcast_arrays(x, y, z), axis=-1)
    return as_scan(coordinates[np.newaxis])[0]


def as_scan(xyz: ArrayLike) -> NDArray[np.void]:
    """Return a scan of shape (lines, samples) from coordinates of shape (lines, samples, 3).

    `nPointIdx` is set to the index of the sample. A point with a NaN in it becomes a missing
    sample, z = 0. The result is a copy: a sample has 32 bytes, its three coordinates 24.
    """
    xyz = np.asarray(xyz)
    if xyz.ndim != 3 or xyz.shape[2] != 3 or xyz.dtype.kind not in "fiu":
        raise ValueError("xyz: expected numbers of the shape (lines, samples, 3), got an array of "
                         f"shape {xyz.shape} of {xyz.dtype}")
    scan = np.zeros(xyz.shape[:2], dtype=_POSITION)
    scan["nPointIdx"] = np.arange(xyz.shape[1])
    for axis, name in enumerate("xyz"):
        scan["pt3D"][name] = xyz[..., axis]
    if xyz.dtype.kind == "f":
        scan["pt3D"]["z"][np.isnan(xyz).any(axis=2)] = 0.0
    return scan


def xyz(scan: NDArray[np.void]) -> NDArray[np.float64]:
    """Return the coordinates of samples or points as a float64 view of shape (..., 3).

    Writing to the view changes the samples. Missing samples have z = 0.
    """
    points = scan["pt3D"] if "pt3D" in (scan.dtype.names or ()) else scan
    if points.dtype != _core.STesk3DPoint.dtype:
        raise ValueError(f"scan: expected samples or points, got an array of {scan.dtype}")
    return points[..., np.newaxis].view(np.float64)


def filled_points(scan: Iterable[NDArray[np.void]]) -> NDArray[np.float64]:
    """Return the coordinates of a scan, (lines, samples, 3), with 0 where nothing was measured."""
    lines = [np.asarray(line) for line in scan]
    if not lines or not all(line.ndim == 1 and line.dtype == _POSITION for line in lines):
        raise ValueError("scan: expected lines of position_dtype; as_scan makes them of x, y and z")
    points = np.zeros((len(lines), max(map(len, lines)), 3))
    for row, line in zip(points, lines):
        is_measured = line["pt3D"]["z"] > LEAST_DISTANCE
        row[:len(line)][is_measured] = xyz(line)[is_measured]
    return points


def flatten(records: NDArray[np.void]) -> NDArray[np.void]:
    """Return an array of records without nested fields, such as `jumpPos_x`, for tables and CSV."""
    columns = dict(_columns(records, ""))
    dtype = [(name, column.dtype) for name, column in columns.items()]
    flat = np.empty(records.shape, dtype=dtype)
    for name, column in columns.items():
        flat[name] = column
    return flat


def _columns(records: NDArray[np.void], prefix: str) -> Iterator[tuple[str, NDArray[Any]]]:
    for name in records.dtype.names or ():
        field = records[name]
        if field.dtype.names:
            yield from _columns(field, f"{prefix}{name}_")
        elif field.ndim > records.ndim:
            for i in range(field.shape[-1]):
                yield f"{prefix}{name}_{i}", field[..., i]
        else:
            yield prefix + name, field
