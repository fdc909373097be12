"""Scan files: `read` and `write`, by the extension of the file.

| Extension | Holds | Package |
| --- | --- | --- |
| `.tif` `.tiff` | float channels x, y, z, or a range image, 16-bit or float | tifffile |
| `.png` | a 16-bit range image | Pillow |
| `.npy` `.npz` | (lines, samples, 3) of x, y, z, a range image of (lines, samples), or records | |
| `.csv` `.txt` `.xyz` `.asc` | columns x, y, z, perhaps line and sample; or profiles | |
| `.ply` | vertices x, y, z with `obj_info num_rows` and `num_cols` | meshio |

Each row of a file is a line; lines advance in x, samples follow y, and z is the distance from the
sensor. A range image has only z: its x and y are the indices of row and column times the pitches.
What has no value is a missing sample with x = y = z = 0: in files 0, or what is not finite.
"""
from __future__ import annotations

import io
import os
import re
import warnings
import zipfile
from pathlib import Path
from typing import Sequence

import numpy as np
from numpy.typing import NDArray

from scanline import _core, _images, _text
from scanline._arrays import LEAST_DISTANCE, as_scan, filled_points
from scanline._packages import package

_LARGEST_COORDINATE = 1e9


def read(path: str | os.PathLike[str], *, pitch_x: float | None = None,
         pitch_y: float | None = None, pitch_z: float = 1.0,
         key: str | None = None) -> NDArray[np.void]:
    """Return the scan in a file as an array (lines, samples) of `position_dtype`.

    Parameters
    ----------
    path : str or Path
        the file; its extension names the format
    pitch_x, pitch_y : float
        for range images, and only for these: the distance of the lines, and that of the samples
    pitch_z : float
        for range images: the distance that a step of the values stands for
    key : str
        for NPZ with several arrays: the name of the scan

    Shorter lines end in missing samples. Coordinates beyond 1e9 become missing too. Raises
    ValueError for a file that holds no scan or would lose values, ImportError if the package that
    reads the format is not installed, and OSError as `open` does.
    """
    path = Path(path)
    reader = _of_extension(_READERS, path)
    with path.open("rb"):
        pass  # the readers word the reason in their own ways
    values = reader(path, key) if reader is _read_npz else reader(path)
    if values.dtype == _core.STesk3DPosition.dtype:
        _refuse_pitches(path, pitch_x, pitch_y, pitch_z)
        return np.array(values, dtype=_core.STesk3DPosition.dtype)
    return _scan_of(path, values, pitch_x, pitch_y, pitch_z)


def write(path: str | os.PathLike[str], scan: NDArray[np.void] | Sequence[NDArray[np.void]], *,
          pitch_z: float = 1.0) -> None:
    """Write a scan to a file, which is replaced if it exists.

    Parameters
    ----------
    path : str or Path
        the file; its extension names the format
    scan : array (lines, samples) or list of lines of `position_dtype`
        the scan; shorter lines are filled up with missing samples
    pitch_z : float
        for PNG: the distance that a step of the values stands for, to which z is rounded

    NPY, NPZ, CSV and PLY keep all digits, TIFF those of single precision. A PNG has only z, in 1 to
    65535 steps. Samples that are not measured (z of 0.0001 or less, or NaN) are written as 0, 0, 0.
    """
    path = Path(path)
    writer = _of_extension(_WRITERS, path)
    points = filled_points(scan)
    if writer is _images.write_png:
        _images.write_png(path, points, pitch_z)
        return
    if pitch_z != 1.0:
        raise ValueError(f"pitch_z: expected for .png alone, got {path}")
    writer(path, points)


def _of_extension(table, path):
    if path.suffix.lower() not in table:
        raise ValueError(f"path: expected one of the extensions {' '.join(table)}, got {path}")
    return table[path.suffix.lower()]


def _refuse_pitches(path, pitch_x, pitch_y, pitch_z):
    if (pitch_x, pitch_y, pitch_z) != (None, None, 1.0):
        raise ValueError(f"pitch_x, pitch_y, pitch_z: have no effect, {path} holds x, y and z")


def _scan_of(path, values, pitch_x, pitch_y, pitch_z):
    if values.ndim == 2:
        if pitch_x is None or pitch_y is None:
            raise ValueError("pitch_x, pitch_y: expected the distances of lines and of samples, as "
                             f"{path} is a range image, which has only z")
        row, column = np.indices(values.shape)
        z = pitch_z * values.astype(float)
        points = np.stack([pitch_x * row, pitch_y * column, z], axis=-1)
    else:
        _refuse_pitches(path, pitch_x, pitch_y, pitch_z)
        points = values.astype(float)
    # Scanners write 0 for no value, beside an x and a y that they know.
    has_value = (np.abs(points) <= _LARGEST_COORDINATE).all(axis=2) & (points[..., 2] != 0.0)
    points[~has_value] = 0.0
    if not has_value.any():
        raise ValueError(f"{path}: holds no measurement: all values are 0 or not finite")
    too_small = np.count_nonzero(has_value & (points[..., 2] <= LEAST_DISTANCE))
    if too_small:
        warnings.warn(f"{path}: {too_small} samples at or below zero count as missing. If z is a "
                      "height, turn it into a distance first", stacklevel=3)
    return as_scan(points)


def _read_npy(path):
    try:
        with path.open("rb") as file:
            return _array(path, np.lib.format.read_array(file, allow_pickle=False))
    except (ValueError, EOFError) as error:
        raise _as_of(path, error) from error


def _read_npz(path, key):
    if not zipfile.is_zipfile(path):
        raise ValueError(f"{path}: is no NPZ file, is damaged or cut short")
    try:
        with np.load(path, allow_pickle=False) as file:
            names = file.files
            name = key or (names[0] if len(names) == 1 else "scan")
            if name not in names:
                raise ValueError(f"key: expected one of {names}, got {name!r}")
            return _array(path, file[name])
    except Exception as error:
        raise _as_of(path, error) from error


def _as_of(path, error):
    text = str(error)
    return ValueError(text if str(path) in text else f"{path}: {text}")


def _array(path, values):
    is_records = values.dtype == _core.STesk3DPosition.dtype and values.ndim == 2
    is_numbers = values.dtype.newbyteorder("=") in _images.RANGE_TYPES
    if is_records or is_numbers and (values.ndim == 2 or values.shape[2:] == (3,)):
        return values
    raise ValueError(f"{path}: expected float32, float64, int16 or uint16 of shape (lines, "
                     "samples) or (lines, samples, 3), or position_dtype in two dimensions, got "
                     f"{values.dtype} of shape {values.shape}")


def _read_ply(path):
    meshio = package("meshio", path)
    header = path.read_bytes().partition(b"end_header")[0]
    shape = dict(re.findall(rb"obj_info num_(rows|cols)\s+(\d+)", header))
    if len(shape) < 2:
        raise ValueError(f"{path}: is a cloud without lines: expected 'obj_info num_rows' and "
                         "'obj_info num_cols' in its header")
    if b"range_grid" in header:
        raise ValueError(f"{path}: has a range grid, which meshio cannot read. Convert it: "
                         "scanline calibrate FILE --plane none --save-scan scan.npy")
    try:
        points = meshio.ply.read(path).points
    except Exception as error:
        raise ValueError(f"{path}: meshio cannot read it: {error}") from error
    lines, samples = int(shape[b"rows"]), int(shape[b"cols"])
    if points.shape != (lines * samples, 3):
        raise ValueError(f"{path}: expected {lines} x {samples} vertices x, y, z as its header "
                         f"states, got an array of shape {points.shape}")
    return points.reshape(lines, samples, 3)


def _write_npy(path, points):
    with path.open("wb") as file:
        np.save(file, points)


def _write_npz(path, points):
    with path.open("wb") as file:
        np.savez_compressed(file, scan=points)


def _write_ply(path, points):
    meshio = package("meshio", path)
    body = io.BytesIO()
    meshio.ply.write(body, meshio.Mesh(points.reshape(-1, 3), []))
    first, rest = re.match(rb"(ply\nformat [^\n]*\n)(.*)", body.getvalue(), re.DOTALL).groups()
    shape = f"obj_info num_rows {points.shape[0]}\nobj_info num_cols {points.shape[1]}\n"
    path.write_bytes(first + shape.encode() + rest)


_READERS = {
    ".tif": _images.read_tiff, ".tiff": _images.read_tiff, ".png": _images.read_png,
    ".npy": _read_npy, ".npz": _read_npz, ".ply": _read_ply,
    ".csv": _text.read, ".txt": _text.read, ".xyz": _text.read, ".asc": _text.read}
_WRITERS = {
    ".tif": _images.write_tiff, ".tiff": _images.write_tiff, ".png": _images.write_png,
    ".npy": _write_npy, ".npz": _write_npz, ".ply": _write_ply,
    ".csv": _text.write, ".txt": _text.write, ".xyz": _text.write, ".asc": _text.write}
