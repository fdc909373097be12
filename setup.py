"""Builds the Python package with CMake, the library inside the extension module.

The wheel needs the core library of OpenCV where it is used, and nothing else of the system.
"""
import re
import shutil
import subprocess
import sys
from pathlib import Path

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

ROOT = Path(__file__).resolve().parent
PARTS_LEFT_OUT = ("TESTS", "BENCHMARKS", "EXAMPLES", "PROGRAM", "DOCS")


class BuildWithCMake(build_ext):
    """Has CMake make the whole package, stubs included, and copies it."""

    def build_extension(self, extension):
        build = Path(self.build_temp).resolve()
        off = [f"-DSCANLINE_BUILD_{part}=OFF" for part in PARTS_LEFT_OUT]
        subprocess.run(["cmake", "-S", ROOT, "-B", build, "-DCMAKE_BUILD_TYPE=Release",
                        "-DBUILD_SHARED_LIBS=OFF", "-DSCANLINE_INSTALL=OFF",
                        "-DSCANLINE_BUILD_PYTHON=ON", f"-DPython_EXECUTABLE={sys.executable}",
                        *off], check=True)
        subprocess.run(["cmake", "--build", build, "--parallel", str(self.parallel or 2),
                        "--target", "scanline_python"], check=True)
        target = Path(self.get_ext_fullpath(extension.name)).parent
        shutil.copytree(build / "python" / "scanline", target, dirs_exist_ok=True,
                        ignore=shutil.ignore_patterns("__pycache__"))


def version():
    project = (ROOT / "CMakeLists.txt").read_text().partition("project(")[2]
    return re.search(r"VERSION (\S+)", project)[1]


setup(
    version=version(),
    ext_modules=[Extension("scanline._core", [])],
    cmdclass={"build_ext": BuildWithCMake},
)
