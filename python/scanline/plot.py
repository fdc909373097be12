"""Pictures of scans and of what was found in them, drawn with matplotlib.

Each function returns the axes, so that titles, limits and further curves can be added, and draws
into `ax` if that is given. What is near the sensor is drawn at the top of a profile and in the
bright colours of a map: a small z, since z is a distance, or a large one with `z_is_height=True`.
Save a picture by `ax.figure.savefig("picture.png")`.

Scans and lines are arrays of `position_dtype` as everywhere in scanline; they are only read.
"""
from __future__ import annotations

import math
from typing import Any, Mapping, Sequence

import numpy as np
from numpy.typing import NDArray

from scanline import _core, _found, _paint
from scanline._arrays import as_scan, filled_points, xyz

_DEGREES = 180.0 / math.pi


def profile(line: NDArray[np.void], found: Any = (), *, title: str | None = None, unit: str = "mm",
            z_is_height: bool = False, ax: Any = None) -> Any:
    """Draw a line with the features found on it.

    Parameters
    ----------
    line : array of `position_dtype`
        the line; missing samples interrupt the curve
    found : SQO_lineFeature, array or sequence of these
        features, gaps, or segments such as ring arcs
    title, unit : str
        the title, and the unit of the coordinates
    z_is_height : bool
        whether z grows towards the sensor
    ax : matplotlib axes
        where to draw; default: a new figure

    Returns
    -------
    ax : matplotlib axes
        y along the line to the right, upwards what is near the sensor
    """
    if ax is None:
        ax = _paint.new_figure(9.0, 4.2)
    points = filled_points([line])[0]
    points[points[:, 2] == 0.0] = np.nan
    ax.plot(points[:, 1], points[:, 2], color="#26548c", linewidth=1.2, label="line", zorder=2)
    for name, colour, curve in _found.marks(found, points):
        _paint.marked(ax, curve, colour, name)
    if not z_is_height:
        ax.invert_yaxis()
    ax.margins(y=0.12)
    ax.grid(color="#e3e6eb", zorder=0)
    ax.set(xlabel=f"y, along the line [{unit}]", ylabel=_name_of_z(unit, z_is_height))
    _paint.finish(ax, title)
    return ax


def scan_map(scan: NDArray[np.void] | Sequence[NDArray[np.void]], trees: Any = (), *,
             title: str | None = None, unit: str = "mm",
             limits: tuple[float, float] | None = None, z_is_height: bool = False,
             ax: Any = None) -> Any:
    """Draw a scan from above in colours of z, with trees over it.

    Parameters
    ----------
    scan : array (lines, samples) or list of lines of `position_dtype`
        the scan; of large ones every nth line and sample is drawn
    trees : list of trees
        trees of features, gaps, segments or semi-circles, in the coordinates of the scan. Each has
        its number in the list, counted from 1, where there is room for it.
    title, unit : str
        the title, and the unit of the coordinates
    z_is_height : bool
        whether z grows towards the sensor
    limits : (float, float)
        z of the ends of the colours; default: the middle 98 % of the scan
    ax : matplotlib axes
        where to draw; default: a new figure

    Returns
    -------
    ax : matplotlib axes
        x from line to line to the right, y along the lines upwards; missing samples are dark
    """
    points = filled_points(scan)
    if ax is None:
        ax = _paint.new_map_figure(points)
    _paint.heights(ax, points, points[..., 2], limits or _paint.middle(points), "viridis",
                   _name_of_z(unit, z_is_height), not z_is_height)
    _paint.name_axes(ax, unit)
    numbered = []
    for index, tree in enumerate(trees, start=1):
        name, colour, paths = _found.paths(tree)
        for path in paths:
            _paint.rimmed(ax, path, colour, name)
        numbered.append((str(index), _spread_over(paths[0])))
    _paint.finish(ax, title)
    _paint.number(ax, numbered)
    return ax


def planes(scan: NDArray[np.void] | Sequence[NDArray[np.void]],
           calibrations: _core.SQO_planeCalibPara | Mapping[str, _core.SQO_planeCalibPara], *,
           unit: str = "mm", z_is_height: bool = False) -> Any:
    """Draw a scan beside what is left of it once it is levelled to a plane, or to each of several.

    Parameters
    ----------
    scan : array (lines, samples) or list of lines of `position_dtype`
        the scan as it was before levelling
    calibrations : SQO_planeCalibPara or dict
        the plane, or several by their names
    unit : str
        the unit of the coordinates
    z_is_height : bool
        whether z grows towards the sensor

    Returns
    -------
    axes : array of matplotlib axes
        the scan, then for each plane the levelled z less its median: white is level with it, red
        is nearer to the sensor. All planes have one range of colours, three times the largest
        median of the size of these differences.
    """
    if isinstance(calibrations, _core.SQO_planeCalibPara):
        calibrations = {"levelled": calibrations}
    points = filled_points(scan)
    is_measured = points[..., 2] != 0.0
    if not is_measured.any():
        raise ValueError("scan: expected measured samples, all of them are missing")
    levelled = [_levelled(points, plane) for plane in calibrations.values()]
    off = [after[..., 2] - np.median(after[..., 2][is_measured]) for after in levelled]
    spread = max(3.0 * max(np.median(np.abs(one[is_measured])) for one in off),
                 1e-3 * np.ptp(_paint.middle(points)))

    axes = _paint.new_row(1 + len(calibrations), points)
    scan_map(scan, unit=unit, title="as scanned", z_is_height=z_is_height, ax=axes[0])
    for ax, after, z, (name, plane) in zip(axes[1:], levelled, off, calibrations.items()):
        _paint.heights(ax, after, z, (-spread, spread), "RdBu_r",
                       f"levelled z less its median [{unit}]", not z_is_height)
        ax.set_xlabel(axes[0].get_xlabel())
        tilt = math.acos(min(plane.levelMatrix[8], 1.0)) * _DEGREES
        _paint.finish(ax, f"{name}: no plane" if plane.planeHeight == -1.0
                      else f"{name}: tilt {tilt:.2f}°")
    return axes


def regions(labels: NDArray[np.integer[Any]], *, first: int = 2, pixel: float = 1.0,
            x0: float = 0.0, y0: float = 0.0, title: str | None = None, unit: str = "pixels",
            ax: Any = None) -> Any:
    """Draw a label image: each region in a colour, with its label and its box.

    Parameters
    ----------
    labels : integer array (rows, columns)
        labels as of `QO_TwoPassLabel` or, in `markers`, of a watershed
    first : int
        the smallest label of a region; what is below is background, grey for -1, else dark
    pixel : float
        the side of a pixel
    x0, y0 : float
        the place of the middle of the first pixel
    title, unit : str
        the title, and the unit of `pixel`
    ax : matplotlib axes
        where to draw; default: a new figure

    Returns
    -------
    ax : matplotlib axes
        columns to the right and rows upwards, as on a map
    """
    labels = np.asarray(labels)
    if labels.ndim != 2 or labels.dtype.kind not in "iu":
        raise ValueError("labels: expected integers of the shape (rows, columns), got "
                         f"{labels.dtype} of shape {labels.shape}")
    if ax is None:
        ax = _paint.new_figure(7.0, 0.8 + 6.0 * labels.shape[0] / max(labels.shape))
    _paint.labels(ax, labels, first, pixel, x0, y0)
    numbered = [_draw_region(ax, pixels, label, pixel, x0, y0)
                for label, pixels in _pixels_of(labels, first)]
    ax.set(xlabel=f"x, columns [{unit}]", ylabel=f"y, rows [{unit}]")
    _paint.finish(ax, title)
    _paint.number(ax, numbered)
    return ax


def _name_of_z(unit, z_is_height):
    return f"z, {'height' if z_is_height else 'distance'} [{unit}]"


def _spread_over(path):
    """Return places on a path that suit a number, the best one first."""
    last = len(path) - 1
    return path[[last // 2, last // 4, last - last // 4, 0, last], :2]


def _levelled(points, plane):
    scan = as_scan(points)
    for line in scan:
        _core.lineDataRT_vector(line, plane.levelMatrix, 0.0)
    return xyz(scan)


def _pixels_of(labels, first):
    """Return the labels from the first one on, each with the rows and columns of its pixels."""
    pixels = np.argwhere(labels >= first)
    values = labels[labels >= first]
    names, counts = np.unique(values, return_counts=True)
    by_label = pixels[np.argsort(values, kind="stable")]
    return zip(names, np.split(by_label, np.cumsum(counts)[:-1]))


def _draw_region(ax, pixels, label, pixel, x0, y0):
    """Draw the box of a region. Return the places that suit its label, with the text."""
    low, high = pixels.min(axis=0), pixels.max(axis=0)
    _paint.box(ax, x0 + pixel * (low[1] - 0.5), y0 + pixel * (low[0] - 0.5),
               pixel * (high[1] - low[1] + 1), pixel * (high[0] - low[0] + 1))
    middle = pixels.mean(axis=0)
    order = np.argsort(((pixels - middle) ** 2).sum(axis=1))
    places = pixels[order[[0, len(order) // 2, -1]]]
    return str(label), np.array([x0, y0]) + pixel * places[:, ::-1]
