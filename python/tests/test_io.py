"""Scan files: round trips, formats, refusals, missing packages, and the program as other side."""
import io as stdio
import os
import re
import shutil
import subprocess
import sys

import numpy as np
import pytest

import scanline
from scanline import io

image = pytest.importorskip("PIL.Image")
meshio = pytest.importorskip("meshio")
tifffile = pytest.importorskip("tifffile")

FORMATS = ["tiff", "tif", "npy", "npz", "csv", "txt", "ply"]
ORGANISED = "obj_info num_rows 2\nobj_info num_cols 2\n"


def make_points(lines=7, samples=9):
    """Points off any grid, with holes at corners and inside, all exact in single precision."""
    x, y = np.meshgrid(0.5 * np.arange(lines), 0.25 * np.arange(samples), indexing="ij")
    points = np.stack([x + 0.125 * y, y, 300.0 + 8.0 * x - 0.5 * y], axis=-1)
    points[0, 0] = points[2, 3:6] = points[-1, -1] = 0.0
    return points


def xyz_of(path, **options):
    scan = io.read(path, **options)
    assert (scan["nPointIdx"] == np.arange(scan.shape[1])).all()
    assert scan.dtype == scanline.position_dtype
    return scanline.xyz(scan)


@pytest.mark.parametrize("extension", FORMATS + ["TIFF", "NPY"])
def test_a_written_scan_reads_the_same(tmp_path, extension):
    points = make_points()
    path = tmp_path / f"scan.{extension}"
    io.write(path, scanline.as_scan(points))
    assert np.array_equal(xyz_of(str(path)), points)


@pytest.mark.parametrize("extension", ["npy", "npz", "csv", "ply"])
def test_double_precision_is_kept(tmp_path, extension):
    points = make_points() / 3.0
    io.write(tmp_path / f"s.{extension}", scanline.as_scan(points))
    assert np.array_equal(xyz_of(tmp_path / f"s.{extension}"), points)


@pytest.mark.parametrize("extension", FORMATS)
def test_writing_fills_lines_and_clears_what_is_not_measured(tmp_path, extension):
    points = make_points()
    lines = list(scanline.as_scan(points))
    lines[1] = lines[1][:4].copy()
    lines[3]["pt3D"]["z"][:3] = (np.nan, 0.0001, -2.0)
    before = [line.copy() for line in lines]
    io.write(tmp_path / f"s.{extension}", lines)
    points[1, 4:] = points[3, :3] = 0.0
    assert np.array_equal(xyz_of(tmp_path / f"s.{extension}"), points)
    for line, was in zip(lines, before):
        np.testing.assert_array_equal(scanline.xyz(line), scanline.xyz(was))


RANGES = [(extension, dtype) for extension in ("npy", "npz", "tiff")
          for dtype in ("u2", "i2", ">u2", "f4", "f8", ">f4")]


@pytest.mark.parametrize("extension, dtype",
                         RANGES + [("lzw.tiff", "u2"), ("lzw.tiff", "f4"), ("png", "u2")])
def test_range_images_get_x_and_y_from_the_pitches(tmp_path, extension, dtype):
    values = np.arange(12, dtype=dtype).reshape(3, 4)
    path = tmp_path / f"range.{extension}"
    if extension == "npy":
        np.save(path, values)
    elif extension == "npz":
        np.savez(path, values)
    elif extension == "tiff":
        tifffile.imwrite(path, values, byteorder=">" if dtype[0] == ">" else "<")
    else:
        options = {"compression": "tiff_lzw"} if extension == "lzw.tiff" else {}
        image.fromarray(values).save(path, **options)
    points = xyz_of(path, pitch_x=0.5, pitch_y=0.25, pitch_z=0.1)
    row, column = np.indices((3, 4))
    expected = np.stack([0.5 * row, 0.25 * column, 0.1 * values.astype(float)], axis=-1)
    expected[0, 0] = 0.0
    assert np.array_equal(points, expected)
    with pytest.raises(ValueError, match="pitch_x, pitch_y: expected"):
        io.read(path, pitch_x=0.5)


def test_png_rounds_z_to_its_steps_and_refuses_what_does_not_fit(tmp_path):
    path = tmp_path / "range.png"
    scan = scanline.as_scan(make_points())
    io.write(path, scan, pitch_z=0.07)
    z = io.read(path, pitch_x=1, pitch_y=1, pitch_z=0.07)["pt3D"]["z"]
    assert 0.02 < np.abs(z - scan["pt3D"]["z"]).max() <= 0.035 + 1e-12
    assert ((z == 0.0) == (scan["pt3D"]["z"] == 0.0)).all()
    for steps, fits in ((1.0, True), (65535.0, True), (0.4, False), (65536.0, False)):
        scan["pt3D"]["z"][1] = 0.5 * steps
        scan["pt3D"]["z"][2:] = 10.0
        if fits:
            io.write(path, scan, pitch_z=0.5)
            assert io.read(path, pitch_x=1, pitch_y=1)["pt3D"]["z"][1, 1] == steps
        else:
            with pytest.raises(ValueError, match="pitch_z: expected one that makes z 1 to 65535"):
                io.write(path, scan, pitch_z=0.5)
    with pytest.raises(ValueError, match="pitch_z: expected for .png alone"):
        io.write(tmp_path / "scan.npy", scan, pitch_z=0.1)


def test_records_and_names_in_npz(tmp_path):
    scan = scanline.as_scan(make_points())
    scan["nPointIdx"] += 5
    np.savez(tmp_path / "two.npz", other=np.zeros(3), scan=scan)
    for options in ({}, {"key": "scan"}):
        found = io.read(tmp_path / "two.npz", **options)
        assert (found["nPointIdx"] == scan["nPointIdx"]).all()
        assert np.array_equal(scanline.xyz(found), scanline.xyz(scan))
    for key in ("other", "absent"):
        with pytest.raises(ValueError, match="expected"):
            io.read(tmp_path / "two.npz", key=key)


H = [0.0, 0.0, 0.0]
TEXTS = {
    "header in any order, comments, a unit": (
        "# made by hand\nline,sample,Z [mm],x_mm,y\n// more\n0,0,300,1,2\n0,1,301,1,3\n",
        [[[1, 2, 300], [1, 3, 301]]]),
    "left-out indices and empty fields": (
        "row;col;x;y;z\n4;1;1;2;300\n4;3;1;;301\n9;0;2;0;302\n",
        [[H, [1, 2, 300], H, H], [[2, 0, 302], H, H, H]]),
    "lines without samples' indices": (
        "profile x y z\n1 1 0 7\n0 0 0 5\n0 0 1 6\n",
        [[[0, 0, 5], [0, 1, 6]], [[1, 0, 7], H]]),
    "points split where y jumps back": (
        "".join(f"{x}\t{y}\t{300 + x}\n" for x in range(3) for y in range(9)),
        [[[x, y, 300 + x] for y in range(9)] for x in range(3)]),
    "points split where y jumps ahead, with a hole on the first line": (
        "".join("0 0 0\n" if (x, y) == (0, 8) else f"{x} {y} 5\n"
                for x in range(2) for y in range(9, 0, -1)),
        [[H if (x, y) == (0, 8) else [x, y, 5] for y in range(9, 0, -1)] for x in range(2)]),
    "quotes, blanks and a byte order mark": (
        "\ufeff\"x\" , \"y\" , \"z\"\n 1 , 2 , 3 \n1,3,nan\n1,4,+1e1\n",
        [[[1, 2, 3], H, [1, 4, 10]]]),
}


@pytest.mark.parametrize("name", TEXTS)
def test_text_layouts(tmp_path, name):
    text, expected = TEXTS[name]
    (tmp_path / "scan.csv").write_text(text, encoding="utf-8")
    assert np.array_equal(xyz_of(tmp_path / "scan.csv"), np.array(expected, dtype=float))


def test_text_with_a_profile_in_each_row(tmp_path):
    (tmp_path / "scan.csv").write_text("1,2,3,4,5,6,7,8,9\n1,,3,nan,5,6,7,8,\n")
    z = xyz_of(tmp_path / "scan.csv", pitch_x=2, pitch_y=0.5)
    assert z[1].tolist()[:3] == [[2.0, 0.0, 1.0], H, [2.0, 1.0, 3.0]]
    assert np.count_nonzero(z[1, :, 2] == 0.0) == 3


def tiff(values=None, patch=None, cut=None, **options):
    def save(path):
        options.setdefault("metadata", None)
        data = make_points().astype(np.float32) if values is None else values
        tifffile.imwrite(path, data, photometric=options.pop("photometric", "rgb"), **options)
        if patch:
            with tifffile.TiffFile(path, mode="r+b") as file:
                file.pages[0].tags[patch[0]].overwrite(patch[1])
        if cut:
            path.write_bytes(path.read_bytes()[:-cut])
    return save


def raw(data):
    return lambda path: path.write_bytes(data.encode() if isinstance(data, str) else data)


def saved(function, *arguments):
    body = stdio.BytesIO()
    function(body, *arguments)
    return body.getvalue()


NPY = saved(np.save, make_points())
REFUSED = [
    ("lossy.tiff", tiff(patch=(262, 32845)), r"lossy encoding \(LogLuv\).*Write it again"),
    ("lossy2.tiff", tiff(patch=(259, 34677)), r"lossy encoding \(SGILOG24\)"),
    ("pages.tiff", tiff(np.ones((2, 4, 5, 3), np.float32)), "several pages"),
    ("planes.tiff", tiff(np.ones((3, 4, 5), np.float32), planarconfig="separate"), "interleaved"),
    ("turned.tiff", tiff(extratags=[(274, 3, 1, 3, True)]), "turned or mirrored"),
    ("colours.tiff", tiff(np.ones((4, 5, 3), np.uint8)), "three float channels.*got uint8"),
    ("deep.tiff", tiff(np.ones((4, 5), np.int32), photometric="minisblack"), "got int32"),
    ("cut.tiff", tiff(cut=40), "cut short"),
    ("cut2.tiff", tiff(cut=40, compression="zlib"), "cut short"),
    ("text.tiff", raw("x,y,z\n1,2,3\n"), "damaged TIFF"),
    ("small.png", lambda path: image.fromarray(np.ones((4, 5), np.uint8)).save(path), "got uint8"),
    ("text.png", raw("x,y,z"), "is no image"),
    ("cut.npy", raw(NPY[:-8]), "cannot reshape"),
    ("pickle.npy", raw(saved(np.save, np.array([None]))), "allow_pickle"),
    ("flat.npy", raw(saved(np.save, np.zeros(5))), r"got float64 of shape \(5,\)"),
    ("wide.npy", raw(saved(np.save, np.zeros((2, 3, 4)))), r"got float64 of shape \(2, 3, 4\)"),
    ("long.npy", raw(saved(np.save, np.zeros((2, 3), int))), "got int64"),
    ("nothing.npy", raw(saved(np.save, np.full((2, 3, 3), np.nan))), "holds no measurement"),
    ("cut.npz", raw(NPY), "is no NPZ file"),
    ("empty.csv", raw("# nothing\n"), "holds no rows"),
    ("binary.csv", raw(NPY), "is no text"),
    ("commas.csv", raw("1,5;2,5;3,5\n1,5;3,5;3,5\n"), "decimal points are expected"),
    ("ragged.csv", raw("x,y,z\n1,2,3\n1,3\n1,4,3\n"), "expected 3 columns.*found '1,3'"),
    ("words.csv", raw("x,y,z\n1,2,3\n1,3,one\n1,4,3\n"), "could not convert string 'one'"),
    ("names.csv", raw("a,b,z\n1,2,3\n"), "header with the columns x, y and z.*found.*a, b, z"),
    ("twice.csv", raw("line,sample,x,y,z\n0,1,1,2,3\n0,1,1,2,3\n"), "each sample of a line once"),
    ("far.csv", raw("line,sample,x,y,z\n0,0,1,2,3\n0,1e9,1,2,3\n"), "without such large gaps"),
    ("half.csv", raw("line,sample,x,y,z\n0,0.5,1,2,3\n"), "whole numbers of 0 or more"),
    ("cloud.ply", raw("ply\nformat ascii 1.0\nelement vertex 0\nend_header\n"), "without lines"),
    ("grid.ply", raw(f"ply\nformat ascii 1.0\n{ORGANISED}element vertex 0\nproperty float x\n"
                     "element range_grid 4\nend_header\n"), "range grid.*scanline calibrate"),
    ("count.ply", raw(f"ply\nformat ascii 1.0\n{ORGANISED}element vertex 2\nproperty float x\n"
                      "property float y\nproperty float z\nend_header\n1 2 3\n1 2 3\n"),
     "expected 2 x 2 vertices"),
    ("scan.stl", raw("solid"), "expected one of the extensions"),
]


@pytest.mark.parametrize("name, save, message", REFUSED, ids=[name for name, *_ in REFUSED])
def test_what_is_no_scan_is_refused(tmp_path, name, save, message):
    path = tmp_path / name
    save(path)
    with pytest.raises(ValueError, match=re.compile(message, re.DOTALL)) as error:
        io.read(path, **({} if "deep" not in name else {"pitch_x": 1.0, "pitch_y": 1.0}))
    assert name in str(error.value)


def test_errors_that_are_not_the_files(tmp_path):
    with pytest.raises(FileNotFoundError, match="absent.tiff"):
        io.read(tmp_path / "absent.tiff")
    scan = scanline.as_scan(make_points())
    io.write(tmp_path / "scan.npy", scan)
    with pytest.raises(ValueError, match="pitch_x, pitch_y, pitch_z: have no effect"):
        io.read(tmp_path / "scan.npy", pitch_x=0.5)
    with pytest.raises(ValueError, match="path: expected one of the extensions"):
        io.write(tmp_path / "scan.stl", scan)
    for wrong in (make_points(), scan[0], [], np.zeros((3, 4))):
        with pytest.raises(ValueError, match="scan: expected lines of position_dtype"):
            io.write(tmp_path / "scan.npy", wrong)


def test_heights_are_kept_with_a_warning_and_far_points_become_missing(tmp_path):
    points = make_points()
    points[3] *= [1.0, 1.0, -1.0]
    points[4, 0, 0] = 2e9
    np.save(tmp_path / "scan.npy", points)
    with pytest.warns(UserWarning, match="9 samples at or below zero"):
        found = xyz_of(tmp_path / "scan.npy")
    points[4, 0] = 0.0
    assert np.array_equal(found, points)


@pytest.mark.parametrize("module, extension, package", [
    ("tifffile", "tiff", "python3-tifffile"), ("PIL.Image", "png", "Pillow"),
    ("meshio", "ply", "python3-meshio")])
def test_a_missing_package_is_named(tmp_path, monkeypatch, module, extension, package):
    monkeypatch.setitem(sys.modules, module, None)
    path = tmp_path / f"scan.{extension}"
    path.write_bytes(b"ply")
    for call in (lambda: io.read(path), lambda: io.write(path, scanline.as_scan(make_points()))):
        with pytest.raises(ImportError, match=package):
            call()


def test_no_optional_package_is_imported_before_it_is_needed():
    code = ("import sys, scanline, scanline.io, scanline.plot; print({'matplotlib', 'pandas',"
            " 'PIL', 'tifffile', 'meshio', 'dask'} & set(sys.modules))")
    printed = subprocess.check_output([sys.executable, "-c", code], text=True)
    assert printed.strip() == "set()"


PROGRAM = os.environ.get("SCANLINE_PROGRAM") or shutil.which("scanline")


def read_by_program(path):
    """What the program reads, unlevelled."""
    copy = path.with_name("by_program.npy")
    subprocess.run([PROGRAM, "calibrate", path, "--plane", "none", "--axes", "keep", "--save-scan",
                    copy, "--overwrite", "--quiet"], check=True, capture_output=True)
    return np.load(copy)


@pytest.mark.skipif(not PROGRAM, reason="needs the program: SCANLINE_PROGRAM or PATH")
@pytest.mark.parametrize("name", ["made.tiff", "made.npy", "text.csv"]
                         + [f"py.{extension}" for extension in FORMATS if extension != "npz"])
def test_the_program_reads_the_same(tmp_path, name):
    path = tmp_path / name
    if name.startswith("made"):
        subprocess.run([PROGRAM, "make", "plate", "--output", path, "--quiet"], check=True,
                       capture_output=True)
    elif name.startswith("py"):
        io.write(path, scanline.as_scan(make_points()))
    else:
        path.write_text("".join(f"{x};{y};{300 + x}\n" for x in range(9) for y in range(20)))
    points = xyz_of(path)
    assert np.array_equal(points, read_by_program(path))
    assert len(points) > 1
