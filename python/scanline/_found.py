"""Names, colours and places of features and trees, for pictures."""
import numpy as np

from scanline import _core
from scanline._arrays import xyz

_NAMES_AND_COLOURS = {
    1: ("jump rise", "#ff4730"), 2: ("jump fall", "#ff8ceb"), 3: ("slope rise", "#ffa13d"),
    4: ("slope fall", "#bf82fa"), 5: ("V", "#4fdb78"), 6: ("segment start", "#66d9f2"),
    7: ("segment end", "#8cb3ff"), 9: ("right angle 1", "#ff8ceb"),
    10: ("right angle 2", "#ffa13d"), 11: ("right angle 3", "#bf82fa"),
    12: ("right angle 4", "#ff4730"), 13: ("peak", "#ffcc29"), 14: ("valley", "#45c7f0"),
    15: ("corner", "#ffffff")}
_OTHER = ("other", "#ffffff")
_GAP = ("gap", "#ff4730")
_SEGMENT = ("segment", "#ffa13d")
_SEMI_CIRCLE = ("semi-circle", "#4fdb78")


def marks(found, points):
    """Return name, colour and curve of what was found on a line of these points.

    A curve is an array of points with a mark at both ends, a feature one of a single point.
    """
    return [mark for records in _arrays_of(found) for mark in _marks_of(records, points)]


def paths(tree):
    """Return the name and the colour of a tree, and its paths: two if its nodes have two ends."""
    nodes = tree.nodes
    if "jumpPos" in nodes.dtype.names:
        return (*_NAMES_AND_COLOURS.get(tree.treeType, _OTHER), [xyz(nodes["jumpPos"])])
    if "gapStart" in nodes.dtype.names:
        return (*_GAP, [xyz(nodes[end]["pt3D"]) for end in ("gapStart", "gapEnd")])
    if "midPt" in nodes.dtype.names:
        return (*_SEMI_CIRCLE, [xyz(nodes["midPt"])])
    return (*_SEGMENT, [xyz(nodes[end]) for end in ("startPt", "endPt")])


def _arrays_of(found):
    if isinstance(found, _core.SQO_lineFeature):
        return [found.features, found.endings]
    if isinstance(found, np.ndarray):
        return [found]
    return [records for one in found for records in _arrays_of(one)]


def _marks_of(records, points):
    names = records.dtype.names or ()
    if "jumpPos" in names:
        return [(*_NAMES_AND_COLOURS.get(int(record["featureType"]), _OTHER), place[np.newaxis])
                for record, place in zip(records, xyz(records["jumpPos"]))]
    if "gapStart" in names:
        ends = [xyz(records[end]["pt3D"]) for end in ("gapStart", "gapEnd")]
        return [(*_GAP, curve) for curve in np.stack(ends, axis=1)]
    if "startPtIdx" in names:
        return [(*_SEGMENT, points[record["startPtIdx"]:record["endPtIdx"] + 1])
                for record in records]
    raise ValueError(f"found: expected features, gaps or segments, got an array of {records.dtype}")
