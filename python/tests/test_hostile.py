"""No input crashes or hangs the interpreter: hostile calls in child processes with a limit on time
and memory, so that a crash is one failed test.
"""
import subprocess
import sys
from pathlib import Path

import pytest

from scanline import _core

NAMES = sorted(_core._signatures)
GROUPS = [NAMES[i::6] for i in range(6)]


def run_child(script, *arguments):
    child = subprocess.run([sys.executable, "-X", "faulthandler", "-W", "ignore",
                            str(Path(__file__).parent / script), *arguments],
                           capture_output=True, timeout=600)
    output = child.stdout.decode(errors="replace") + child.stderr.decode(errors="replace")
    assert child.returncode == 0, f"returned {child.returncode}\n{output[-6000:]}"


@pytest.mark.parametrize("names", GROUPS, ids=[names[0] for names in GROUPS])
def test_calls_return_or_refuse(names):
    pytest.importorskip("hypothesis")
    run_child("hostile_calls.py", *names)


def test_seeded_floods_end():
    run_child("seeded_floods.py", "3000")
