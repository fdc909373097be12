"""Algorithms for the data of laser-line 3D scanners, on NumPy arrays.

All functions and records of the C++ library have their own names here. A line of a scan is an array
of `position_dtype` records, which has the fields `nPointIdx` and `pt3D`, and that `x`, `y` and `z`:

>>> import numpy as np, scanline
>>> y = np.arange(0.0, 100.0, 0.5)
>>> z = np.where(y < 50.0, 300.0, 290.0)              # a step of 10 towards the sensor
>>> line = scanline.as_line(y, z)
>>> param = scanline.SQO_cornerParam(
...     minEndingGap=5.0, minEndingGap_z=20.0, scale=3.0,
...     cornerTh=45.0, jumpCornerTh_1=30.0, jumpCornerTh_2=15.0)
>>> found = scanline.qo_getLineCornerFeature(line, 0, param)
>>> [scanline.FeatureType(f["featureType"]).name for f in found.features]
['FEATURE_JUMP_FALL']

A scan is a two-dimensional array (lines, samples) of the same records, or a list of lines; make one
from plain coordinates by `as_scan`. Rules for all functions:

- A count of samples or lines is not given: arrays know theirs.
- What C++ changes in place is changed in the caller's array. Where that is not possible the call
  is a ValueError, never a change of a copy.
- What C++ appends to or writes through a pointer is returned, several results as a named tuple.
  A list given by keyword under the name of the result takes it as well. Numbers that the function
  leaves unset are NaN, or 0 for integers.
- Records of parameters are objects with keywords, or dicts; points and ranges may be tuples.
- Growers return a list of trees, and continue the one given by keyword or in `trees`.
- Preconditions that C++ leaves to the caller raise ValueError.
- `qo_pointClustering` leaves its points as they are: an array cannot become empty.

The interpreter's lock is released in all calls that visit samples, so threads run side by side.
Two threads must not change one array at a time.
"""
from scanline import _core
from scanline._arrays import as_line, as_scan, flatten, xyz
from scanline._codes import FeatureType, TreeState
from scanline._core import *  # noqa: F403
from scanline._core import CopyWarning, __version__

position_dtype = _core.STesk3DPosition.dtype
point_dtype = _core.STesk3DPoint.dtype
colour_point_dtype = _core.STeskXYZRGBDPoint.dtype
feature_dtype = _core.SQO_basicFeature1D.dtype
peak_dtype = _core.SQO_2DValueI.dtype
globals().update(FeatureType.__members__)
globals().update(TreeState.__members__)

__all__ = [name for name in dir(_core) if not name.startswith("_")]
__all__ += ["FeatureType", "TreeState", *FeatureType.__members__, *TreeState.__members__]
__all__ += ["__version__", "as_line", "as_scan", "flatten", "xyz", "position_dtype", "point_dtype",
            "colour_point_dtype", "feature_dtype", "peak_dtype"]
