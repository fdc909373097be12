"""The stubs agree with the module, and a type checker works with them."""
import os
import re
import subprocess
import sys
from pathlib import Path

import pytest

import scanline

pytest.importorskip("mypy")
FOLDER = Path(__file__).parent
PACKAGE = Path(scanline.__file__).parent


@pytest.fixture(scope="module", autouse=True)
def stubs():
    if not (PACKAGE / "_core.pyi").exists():
        pytest.skip("the build has written no stubs")


def run(folder, *command):
    environment = {**os.environ, "MYPYPATH": str(PACKAGE.parent), "MYPY_CACHE_DIR": str(folder)}
    return subprocess.run([sys.executable, "-m", *command], capture_output=True, text=True,
                          cwd=folder, env=environment, timeout=600)


def is_of_stub(name):
    """Whether a name is in a stub, that of the package or of the extension module."""
    return name.startswith("scanline._core.") or name.count(".") == 1


@pytest.fixture(scope="module")
def cache(tmp_path_factory):
    """A folder in which the runs share what mypy has read."""
    return tmp_path_factory.mktemp("mypy")


def test_strict_program_is_accepted(cache):
    checked = run(cache, "mypy", "--strict", str(FOLDER / "typed_sample.py"))
    assert checked.returncode == 0, checked.stdout + checked.stderr
    subprocess.run([sys.executable, str(FOLDER / "typed_sample.py")], check=True,
                   stdout=subprocess.DEVNULL)


def test_mistakes_are_found(cache):
    wrong = FOLDER / "wrong_sample.py"
    checked = run(cache, "mypy", "--strict", str(wrong))
    found = {int(line) for line in re.findall(r"wrong_sample\.py:(\d+): error", checked.stdout)}
    expected = {number for number, line in enumerate(wrong.read_text().split("\n"), 1)
                if line.endswith("# error")}
    assert found == expected, checked.stdout


def test_stubs_agree_with_module(cache):
    settings = cache / "settings"
    settings.write_text("[mypy]\nignore_missing_imports = True\n")
    checked = run(cache, "mypy.stubtest", "--concise", "--mypy-config-file", str(settings),
                  "scanline")
    errors = [line for line in checked.stdout.splitlines() if is_of_stub(line.split(" ")[0])]
    # pybind11 gives each class a metaclass of its own, which is no matter of the stubs.
    assert [line for line in errors if "metaclass differs" not in line] == []
    assert errors and not checked.stderr
