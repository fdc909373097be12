"""The examples, the tutorial and the code of the README run, print what they state, and draw."""
import contextlib
import io as stdio
import re
import runpy
from pathlib import Path

import numpy as np
import pytest

import scanline

matplotlib = pytest.importorskip("matplotlib")
image = pytest.importorskip("PIL.Image")
pytest.importorskip("tifffile")

ROOT = Path(__file__).resolve().parents[2]

PRINTED = {  # as the examples in C++ print it
    "trace_edges": "edge of 99 nodes from (10.5, 20.0, 499.7) to (59.6, 20.0, 499.7)\n"
                   "edge of 99 nodes from (10.5, 60.5, 499.7) to (59.6, 60.5, 499.7)\n",
    "follow_gaps": "gap on lines 0 to 119, 4.20 mm wide\n",
    "compare_planes": "heights  tilt 3.66 deg, height 99.80; opposite corners of the table at "
                      "99.796 and 99.796\n"
                      "region   tilt 3.66 deg, height 99.80; opposite corners of the table at "
                      "99.796 and 99.796\n"
                      "roll -2.29, pitch 2.86, yaw -0.06 deg\n",
    "split_discs": "object with its middle at (30, 50), 1249 mm2\n"
                   "object with its middle at (68, 60), 1289 mm2\n",
    "fit_rods": "rod of radius 10.00 mm, centre at y = 35.00, z = 390.00\n"
                "rod of radius 6.00 mm, centre at y = 85.00, z = 394.00\n"}


@pytest.fixture(autouse=True)
def run_in_a_folder_without_a_screen(tmp_path, monkeypatch):
    matplotlib.use("Agg")
    monkeypatch.chdir(tmp_path)
    yield
    from matplotlib import pyplot
    pyplot.close("all")


def assert_picture(path):
    with image.open(path) as picture:
        assert picture.width >= 400 and picture.height >= 200
        assert len(np.unique(np.asarray(picture.convert("L")))) > 20


@pytest.mark.parametrize("name", PRINTED)
def test_an_example_prints_as_in_cpp_and_draws(name, capsys):
    example = runpy.run_path(str(ROOT / "python/examples" / f"{name}.py"))
    example["main"]("picture.png")
    assert capsys.readouterr().out == PRINTED[name]
    assert_picture("picture.png")


def blocks_of(path):
    """The blocks of Python in a page, each with its first line and the text that it prints."""
    text = path.read_text(encoding="utf-8")
    pattern = re.compile(r"^```python\n(.*?)^```\n(?:\n```text\n(.*?)^```\n)?", re.M | re.S)
    return [(text[:match.start()].count("\n") + 1, *match.groups())
            for match in pattern.finditer(text)]


def run_page(path):
    names = {"__name__": "page"}
    blocks = blocks_of(path)
    for line, code, expected in blocks:
        printed = stdio.StringIO()
        with contextlib.redirect_stdout(printed):
            exec(compile("\n" * line + code, path, "exec"), names)
        assert printed.getvalue() == (expected or ""), f"{path.name}:{line}"
    return len(blocks)


def test_the_tutorial_runs_and_draws_its_pictures(tmp_path):
    page = ROOT / "docs/python.md"
    assert run_page(page) >= 10
    pictures = re.findall(r"\]\(images/python/(\w+\.png)\)", page.read_text(encoding="utf-8"))
    assert pictures
    for name in pictures:
        assert_picture(tmp_path / name)
        assert_picture(ROOT / "docs/images/python" / name)


def test_the_readme_runs_and_ends_in_a_picture(tmp_path):
    x, y = np.meshgrid(0.5 * np.arange(200), 0.25 * np.arange(400), indexing="ij")
    z = np.where(np.abs(y - 50.0) < 20.0, 260.0, 300.0)
    scanline.io.write("scan.tiff", scanline.as_scan(np.stack([x, y, z], axis=-1)))
    assert run_page(ROOT / "README.md") == 1
    pictures = list(tmp_path.glob("*.png"))
    assert len(pictures) == 1
    assert_picture(pictures[0])
