"""Calls functions with hostile arguments: hostile_calls.py NAME...

A property for each function: a call returns, or raises an error that names one of its arguments and
leaves its arrays as they were.
"""
import os
import re
import resource
import signal
import sys
import traceback
from collections import Counter
from pathlib import Path

import numpy as np
from call_table import PROGRAM, call_with, calls_of, python_arguments
from hostile_arguments import hostile, perturbed
from hypothesis import HealthCheck, given, seed, settings
from hypothesis import strategies as st

import scanline
from scanline import _core

EXAMPLES = int(os.environ.get("SCANLINE_HOSTILE_EXAMPLES", "60"))
SECONDS_A_CALL = 20


def owners(value):
    """The arrays that own the memory of an argument."""
    if isinstance(value, np.ndarray):
        while isinstance(value.base, np.ndarray):
            value = value.base
        return [value]
    if isinstance(value, scanline.SJU_waterShedImage):
        return owners(value.gray) + owners(value.markers)
    return [owner for item in value for owner in owners(item)] \
        if isinstance(value, (list, tuple)) else []


def is_named(error, names):
    """Whether a message starts with the name of an argument, or of a place inside one."""
    return re.match(r"(\w+)[:.\[ ]", str(error)).group(1) in names


def call(name, arguments):
    signal.alarm(SECONDS_A_CALL)  # its default action ends the process
    try:
        call_with(name, arguments)
    finally:
        signal.alarm(0)


def check(name, arguments, ends):
    """Makes a call, and counts in `ends` how it ended."""
    memory = [(owner, owner.tobytes()) for value in arguments.values() for owner in owners(value)]
    try:
        call(name, arguments)
        ends["result"] += 1
    except MemoryError:
        ends["memory"] += 1
    except (TypeError, ValueError) as error:
        ends["error"] += 1
        assert is_named(error, arguments), f"{name}: {error}"
        for owner, before in memory:
            assert owner.tobytes() == before, f"{name} has changed its input: {error}"


def sound_calls(names):
    """Plain arguments of sound calls, if the program that has them was built."""
    if not Path(PROGRAM).is_file():
        return {name: [] for name in names}
    calls = calls_of(PROGRAM, ["0", "1", "2", "3"])
    return {name: [before for _, before, _, _ in calls[name]] for name in names}


def mixed(name, arguments, sound, random):
    """Arguments of which most come from a sound call, with a few other numbers."""
    base = python_arguments(name, int(random.integers(2)), sound[random.integers(len(sound))])
    for argument, value in base.items():
        perturbed(random, value)
        if random.random() < 0.8:
            arguments[argument] = value
    return arguments


def property_of(name, sound, ends):
    given_types = {argument: text for argument, text, role in _core._signatures[name]["arguments"]
                   if role not in ("count", "returned")}

    @seed(1)
    @settings(max_examples=EXAMPLES, deadline=None, database=None, print_blob=False,
              suppress_health_check=list(HealthCheck))
    @given(st.fixed_dictionaries({argument: hostile(text)
                                  for argument, text in given_types.items()}),
           st.integers(0, 2**32 - 1))
    def calls_end(arguments, number):
        if sound and number % 4 > 0:
            arguments = mixed(name, arguments, sound, np.random.default_rng(number))
        check(name, arguments, ends)

    return calls_end


def main(names):
    # What would fill the memory raises MemoryError. A sanitizer reserves all addresses for itself.
    if "libasan" not in os.environ.get("LD_PRELOAD", ""):
        resource.setrlimit(resource.RLIMIT_AS, (3 * 2**30, 3 * 2**30))
    calls = sound_calls(names)
    failures = 0
    for name in names:
        print(name, flush=True)
        ends = Counter()
        try:
            property_of(name, calls[name], ends)()
            print(" ", dict(ends))
            # Both occur, or the arguments are not what they should be.
            assert not calls[name] or (ends["result"] > EXAMPLES / 20 and ends["error"] > 0)
        except Exception:
            traceback.print_exc()
            failures += 1
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
