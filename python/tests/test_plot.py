"""Pictures: what is drawn where, and that texts do not overlap."""
import itertools
import sys

import numpy as np
import pytest

import scanline
from scanline import plot

matplotlib = pytest.importorskip("matplotlib")
matplotlib.use("Agg")
plt = pytest.importorskip("matplotlib.pyplot")


@pytest.fixture(autouse=True)
def close_figures():
    yield
    plt.close("all")


def make_scan(lines=30, samples=40):
    """A plane at 300 with a box 20 higher, and holes in its shadow and in all of line 3."""
    x, y = np.meshgrid(0.5 * np.arange(lines), 0.25 * np.arange(samples), indexing="ij")
    z = np.where((x > 5.0) & (x < 10.0) & (y > 2.0) & (y < 6.0), 280.0, 300.0)
    z[(y >= 6.0) & (y < 7.0) & (x > 5.0) & (x < 10.0)] = np.nan
    z[3] = np.nan
    return scanline.as_scan(np.stack([x, y, z], axis=-1))


def make_trees(paths, kind=1):
    """Feature trees along paths of x and y."""
    lines = max(len(path) for path in paths)
    features = []
    for line in range(lines):
        records = np.zeros(len(paths), dtype=scanline.feature_dtype)
        records["featureType"] = kind
        records["jumpPos2D"]["x"] = line
        for record, path in zip(records, paths):
            record["jumpPos"]["x"], record["jumpPos"]["y"] = path[line]
            record["jumpPos"]["z"] = 300.0
        features.append(scanline.SQO_lineFeature(lineIdx=line, features=records,
                                                 endings=records[:0]))
    grow = {"yDeviation_max": 0.05, "zDeviation_max": 1.0, "maxLineSkipNum": 5,
            "maxSkipDistance": 3.0, "minLTypeTreeLen": 1.0, "minVTypeTreeLen": 1.0}
    return scanline.qo_getFeatureGrowingTrees(features, grow)


def legend_of(ax):
    return [text.get_text() for text in ax.get_legend().get_texts()] if ax.get_legend() else []


def texts_of(ax):
    return [text for text in ax.texts if text.get_text()]


def assert_texts_apart(figure):
    """No two texts of a figure overlap, and none leaves it."""
    figure.canvas.draw()
    boxes = []
    for ax in figure.findobj(matplotlib.axes.Axes):
        ticks = [label for axis in (ax.xaxis, ax.yaxis) for label in axis.get_ticklabels()
                 if axis.get_view_interval().min() <= label.get_position()[axis is ax.yaxis]
                 <= axis.get_view_interval().max()]
        legend = ax.get_legend().get_texts() if ax.get_legend() else []
        titles = [ax.title, ax._left_title, ax.xaxis.label, ax.yaxis.label]
        boxes += [(text.get_text(), text.get_window_extent())
                  for text in [*ticks, *legend, *titles] if text.get_text()]
        numbers = [(text.get_text(), text.get_bbox_patch().get_window_extent())
                   for text in ax.texts]
        for name, box in numbers:
            assert ax.get_window_extent().count_contains(box.corners()) == 4, name
        boxes += numbers
    assert len(boxes) > 8
    for (name, box), (other, second) in itertools.combinations(boxes, 2):
        assert not box.padded(-1.0).overlaps(second.padded(-1.0)), (name, other)
    for name, box in boxes:
        assert figure.bbox.padded(1.0).contains(box.x0, box.y0), name
        assert figure.bbox.padded(1.0).contains(box.x1, box.y1), name


def test_a_map_shows_each_sample_at_its_place():
    scan = make_scan()
    before = scan.copy()
    ax = plot.scan_map(scan)
    mesh = ax.collections[0]
    assert np.array_equal(mesh.get_array().mask.reshape(scan.shape), scan["pt3D"]["z"] == 0.0)
    z = mesh.get_array().filled(0.0).reshape(scan.shape)
    assert np.array_equal(z, scan["pt3D"]["z"])
    corners = mesh.get_coordinates()
    middles = 0.25 * (corners[1:, 1:] + corners[:-1, 1:] + corners[1:, :-1] + corners[:-1, :-1])
    is_measured = scan["pt3D"]["z"] != 0.0
    np.testing.assert_allclose(middles[is_measured], scanline.xyz(scan)[..., :2][is_measured],
                               atol=1e-9)
    assert ax.get_aspect() == 1.0
    assert np.array_equal(scanline.xyz(before), scanline.xyz(scan))


def test_the_colours_ignore_outliers_and_are_bright_near_the_sensor():
    scan = make_scan()
    scan["pt3D"]["z"][20, 20:24] = 5000.0
    for is_height in (False, True):
        mesh = plot.scan_map(scan, z_is_height=is_height).collections[0]
        assert mesh.norm.vmin < 280.0 and 300.0 < mesh.norm.vmax < 310.0
        low, high = mesh.cmap(0.0)[:3], mesh.cmap(1.0)[:3]
        assert (sum(low) > sum(high)) != is_height
        assert mesh.colorbar.ax.yaxis_inverted() != is_height
        assert ("height" if is_height else "distance") in mesh.colorbar.ax.get_ylabel()
    assert plot.scan_map(scan, limits=(0.0, 10.0)).collections[0].norm.vmax == 10.0


def test_large_scans_are_thinned_and_short_lines_filled():
    x, y = np.meshgrid(np.arange(3.0), np.arange(4000.0), indexing="ij")
    lines = list(scanline.as_scan(np.stack([x, y, 0.0 * x + 5.0], axis=-1)))
    lines[1] = lines[1][:2000]
    mesh = plot.scan_map(lines).collections[0]
    shape = tuple(count - 1 for count in mesh.get_coordinates().shape[:2])
    assert shape == (3, 800)
    assert mesh.get_array().mask.reshape(shape).sum(axis=1).tolist() == [0, 400, 0]


def test_trees_are_drawn_and_numbered_once_without_overlap():
    paths = [[(0.5 * i, y) for i in range(20)] for y in (1.0, 5.0, 5.5, 8.0)]
    trees = make_trees(paths)
    assert len(trees) == 4
    ax = plot.scan_map(make_scan(), trees, title="Edges")
    assert legend_of(ax) == ["jump rise"]
    drawn = [line.get_xydata() for line in ax.lines]
    for tree, path in zip(trees, drawn):
        assert np.array_equal(path, scanline.xyz(tree.nodes["jumpPos"])[:, :2])
    numbers = [text.get_text() for text in texts_of(ax)]
    assert len(set(numbers)) == len(numbers) and {"1", "4"} <= set(numbers) <= set("1234")
    assert_texts_apart(ax.figure)


def test_trees_of_all_kinds_are_drawn_by_the_ends_of_their_nodes():
    starts, ends = np.arange(30.0).reshape(2, 5, 3)
    gaps = np.zeros(5, dtype=scanline.SQO_basicFeatureGap.dtype)
    scanline.xyz(gaps["gapStart"])[:], scanline.xyz(gaps["gapEnd"])[:] = starts, ends
    segments = np.zeros(5, dtype=scanline.SJU_segFeature.dtype)
    scanline.xyz(segments["startPt"])[:], scanline.xyz(segments["endPt"])[:] = starts, ends
    circles = np.zeros(5, dtype=scanline.SQO_featureSemiCircle.dtype)
    scanline.xyz(circles["midPt"])[:] = starts
    common = {"treeState": 2, "sLineIdx": 0, "eLineIdx": 4, "treeValue": 0.0}
    span = {"treeType": 1, "xRange": (0, 0), "yRange": (0, 0), "anchorNode": -1}
    everywhere = {"xRange": (0, 0), "yRange": (0, 0), "zRange": (0, 0)}
    trees = [
        scanline.SQO_gapFeatureTree(treeNodes=gaps, **common, **span),
        scanline.SJU_segFeatureTree(treeNodes=segments, **common),
        scanline.SQO_semiCircleFeatureTree(treeNodes=circles, treeType=0, treeRange=everywhere,
                                           treeValue2=0.0, treeTag=0, **common)]
    ax = plot.scan_map(make_scan(), trees)
    assert legend_of(ax) == ["gap", "segment", "semi-circle"]
    expected = [starts, ends, starts, ends, starts]
    for drawn, path in zip(ax.lines, expected):
        assert np.array_equal(drawn.get_xydata(), path[:, :2])
    assert len(ax.lines) == len(expected)


def test_a_crowd_of_trees_keeps_its_numbers_apart():
    paths = [[(0.5 * i, 0.5 + 0.06 * k) for i in range(20)] for k in range(120)]
    ax = plot.scan_map(make_scan(), make_trees(paths), title="Many")
    assert 20 < len(texts_of(ax)) < 120
    assert_texts_apart(ax.figure)


def test_a_profile_with_features_of_all_kinds():
    scan = make_scan()
    line = scan[15]
    corner = scanline.SQO_cornerParam(minEndingGap=2.0, minEndingGap_z=60.0, scale=1.0,
                                      cornerTh=30.0, jumpCornerTh_1=60.0, jumpCornerTh_2=30.0)
    found = scanline.qo_getLineCornerFeature(line, 15, corner)
    arcs = np.zeros(1, dtype=scanline.SJU_segFeature.dtype)
    arcs["startPtIdx"], arcs["endPtIdx"] = 9, 20
    gaps = np.zeros(2, dtype=scanline.SQO_basicFeatureGap.dtype)
    gaps["gapStart"], gaps["gapEnd"] = line[3], line[6]
    ax = plot.profile(line, [found, arcs, gaps], title="A line")
    assert {"line", "segment", "gap"} < set(legend_of(ax))
    assert len(legend_of(ax)) == len(set(legend_of(ax)))
    curve = ax.lines[0].get_xydata()
    is_hole = line["pt3D"]["z"] == 0.0
    assert np.array_equal(np.isnan(curve[:, 1]), is_hole) and is_hole.any()
    marked = np.concatenate([one.get_xydata() for one in ax.lines[1:]])
    for feature in np.concatenate([found.features, found.endings]):
        place = [feature["jumpPos"]["y"], feature["jumpPos"]["z"]]
        assert (marked == place).all(axis=1).any()
    arc = next(one for one in ax.lines if one.get_label() == "segment").get_xydata()
    assert np.array_equal(arc, scanline.xyz(line)[9:21, 1:])
    gap = next(one for one in ax.lines if one.get_label() == "gap").get_xydata()
    assert np.array_equal(gap, scanline.xyz(line)[[3, 6], 1:])
    assert ax.yaxis_inverted() and not plot.profile(line, z_is_height=True).yaxis_inverted()
    assert_texts_apart(ax.figure)


def test_planes_side_by_side():
    x, y = np.meshgrid(np.arange(40.0), np.arange(50.0), indexing="ij")
    z = 300.0 + 0.1 * x - np.where((x > 30) & (y > 30), 20.0, 0.0)
    scan = scanline.as_scan(np.stack([x, y, z], axis=-1))
    before = scan.copy()
    found = scanline.qo_getPlaneCalibPara2_ROI(
        scan, {"xRange": (0, 25), "yRange": (0, 100), "zRange": (0, 1e9)})
    level = scanline.qo_getPlaneCalibPara2_ROI(
        scan, {"xRange": (3, 3), "yRange": (99, 100), "zRange": (0, 1e9)})
    axes = plot.planes(scan, {"fitted": found, "none": level})
    titles = [ax.get_title(loc="left") for ax in axes]
    assert titles == ["as scanned", "fitted: tilt 5.71°", "none: tilt 0.00°"]
    first, second = (ax.collections[0] for ax in axes[1:])
    assert first.get_clim() == second.get_clim()
    assert first.get_clim()[0] == -first.get_clim()[1]
    on_table = z > 299.0
    assert np.abs(first.get_array().reshape(z.shape)[on_table]).max() < 1e-4
    assert np.ptp(second.get_array().reshape(z.shape)[on_table]) > 3.0
    assert np.array_equal(scanline.xyz(before), scanline.xyz(scan))
    assert_texts_apart(axes[0].figure)
    assert len(plot.planes(scan, found)) == 2


def test_regions_with_boxes_and_labels():
    image = np.zeros((40, 60), dtype=np.int32)
    image[4:10, 5:25], image[20:30, 30:50], image[35, 4] = 2, 7, 9
    image[:, 0], image[15, :] = 1, -1
    ax = plot.regions(image, pixel=0.5, x0=10.0, y0=-1.0, unit="mm", title="Regions")
    boxes = [(*patch.get_xy(), patch.get_width(), patch.get_height()) for patch in ax.patches]
    assert boxes == [(12.25, 0.75, 10.0, 3.0), (24.75, 8.75, 10.0, 5.0), (11.75, 16.25, 0.5, 0.5)]
    places = {text.get_text(): text.xy for text in texts_of(ax)}
    assert set(places) == {"2", "7", "9"}
    colours = ax.images[0].get_array()
    left, right, bottom, top = ax.images[0].get_extent()
    assert ax.images[0].origin == "lower" and not ax.yaxis_inverted()
    assert (left, right, bottom, top) == (9.75, 39.75, -1.25, 18.75)
    for label, (x, y) in places.items():
        assert image[round((y + 1.0) / 0.5), round((x - 10.0) / 0.5)] == int(label)
    assert len({tuple(colours[row, col]) for row, col in ((5, 6), (21, 31), (15, 5), (0, 5))}) == 4
    assert tuple(colours[1, 0]) == tuple(colours[1, 1])
    assert_texts_apart(ax.figure)


def test_given_axes_are_used_and_no_figure_is_made():
    figure, axes = plt.subplots(1, 3)
    scan = make_scan()
    assert plot.scan_map(scan, ax=axes[0]) is axes[0]
    assert plot.profile(scan[0], ax=axes[1]) is axes[1]
    assert plot.regions(np.eye(4, dtype=int) * 2, ax=axes[2]) is axes[2]
    assert plt.get_fignums() == [figure.number]


def test_odd_input():
    for wrong in ([], np.zeros((3, 4))):
        with pytest.raises(ValueError, match="scan: expected lines of position_dtype"):
            plot.scan_map(wrong)
    with pytest.raises(ValueError, match="found: expected features"):
        plot.profile(make_scan()[0], np.zeros(3, dtype=scanline.point_dtype))
    with pytest.raises(ValueError, match="labels: expected integers"):
        plot.regions(np.zeros((3, 4)))
    for thin in (make_scan()[:1], make_scan()[:, :1].copy()):
        with pytest.raises(ValueError, match="scan: expected two lines of two samples"):
            plot.scan_map(thin)
    nothing = scanline.as_scan(np.zeros((5, 6, 3)))
    plot.scan_map(nothing).figure.canvas.draw()
    with pytest.raises(ValueError, match="scan: expected measured samples"):
        plot.planes(nothing, scanline.qo_getPlaneCalibPara2(nothing))
    plot.profile(make_scan()[3]).figure.canvas.draw()
    plot.regions(np.zeros((5, 6), dtype=int)).figure.canvas.draw()


def test_matplotlib_is_named_when_it_is_missing(monkeypatch):
    monkeypatch.setitem(sys.modules, "matplotlib", None)
    with pytest.raises(ImportError, match="python3-matplotlib"):
        plot.profile(make_scan()[0])
