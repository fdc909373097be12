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

import numpy as np
from hostile_arguments import hostile
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
    signature = _core._signatures[name]
    positions = [arguments[entry] for entry, _, kind in signature["parameters"]
                 if kind == "position"]
    keywords = {entry: arguments[entry] for entry, _, kind in signature["parameters"]
                if kind == "keyword" and entry in arguments}
    signal.alarm(SECONDS_A_CALL)  # its default action ends the process
    try:
        getattr(scanline, name)(*positions, **keywords)
    finally:
        signal.alarm(0)


def check(name, arguments):
    memory = [(owner, owner.tobytes()) for value in arguments.values() for owner in owners(value)]
    try:
        call(name, arguments)
    except MemoryError:
        return
    except (TypeError, ValueError) as error:
        assert is_named(error, arguments), f"{name}: {error}"
        for owner, before in memory:
            assert owner.tobytes() == before, f"{name} has changed its input: {error}"


def property_of(name):
    given_types = {argument: text for argument, text, role in _core._signatures[name]["arguments"]
                   if role not in ("count", "returned")}

    @seed(1)
    @settings(max_examples=EXAMPLES, deadline=None, database=None, derandomize=False,
              suppress_health_check=list(HealthCheck), print_blob=False)
    @given(st.fixed_dictionaries({argument: hostile(text)
                                  for argument, text in given_types.items()}))
    def calls_end(arguments):
        check(name, arguments)

    return calls_end


def main(names):
    # What would fill the memory raises MemoryError. A sanitizer reserves all addresses for itself.
    if "libasan" not in os.environ.get("LD_PRELOAD", ""):
        resource.setrlimit(resource.RLIMIT_AS, (3 * 2**30, 3 * 2**30))
    failures = 0
    for name in names:
        print(name, flush=True)
        try:
            property_of(name)()
        except Exception:
            traceback.print_exc()
            failures += 1
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
