"""The installed package works wherever its tree is moved, beside the installed library."""
import os
import shutil
import subprocess
import sys

import pytest

BUILD = os.environ.get("SCANLINE_BUILD_DIR", "")


def test_installed_tree_can_move(tmp_path):
    if not BUILD:
        pytest.skip("SCANLINE_BUILD_DIR is not a build with rules to install")
    for component in ("python", "runtime"):
        subprocess.run(["cmake", "--install", BUILD, "--component", component, "--prefix",
                        tmp_path / "first"], check=True, stdout=subprocess.DEVNULL)
    shutil.move(tmp_path / "first", tmp_path / "moved")
    module = next((tmp_path / "moved").rglob("scanline/__init__.py"))
    assert {"_core.pyi", "__init__.pyi", "py.typed"} <= {p.name for p in module.parent.iterdir()}
    program = ("import doctest, scanline; print(scanline.__file__); "
               "tried = doctest.testmod(scanline); assert tried.attempted and not tried.failed")
    ran = subprocess.run([sys.executable, "-B", "-c", program], check=True, capture_output=True,
                         text=True, cwd=tmp_path,
                         env={**os.environ, "PYTHONPATH": str(module.parent.parent)})
    assert ran.stdout.strip() == str(module)
    libraries = subprocess.run(["ldd", next(module.parent.glob("_core*.so"))], capture_output=True,
                               text=True).stdout
    library = [line for line in libraries.splitlines() if "libscanline" in line]
    assert not library or str(tmp_path / "moved") in os.path.realpath(library[0].split()[2])
