"""Reference counts and memory stay as they are over many calls, whether they succeed or not."""
import copy
import ctypes
import gc
import os
import sys
import warnings

import numpy as np
import pytest
from call_table import call_with, python_arguments, table_of_calls

from scanline import _core

CALLS = 10_000
SEED = "41"  # a small one


class MallocInfo(ctypes.Structure):
    _fields_ = [(name, ctypes.c_size_t) for name in
                ("arena", "ordblks", "smblks", "hblks", "hblkhd", "usmblks", "fsmblks", "uordblks",
                 "fordblks", "keepcost")]


def allocated_bytes():
    """Bytes that are allocated outside of Python's own allocator."""
    mallinfo = getattr(ctypes.CDLL(None), "mallinfo2", None)
    if mallinfo is None or "libasan" in os.environ.get("LD_PRELOAD", ""):
        pytest.skip("no mallinfo2 in this C library")
    mallinfo.restype = MallocInfo
    info = mallinfo()
    return info.uordblks + info.hblkhd


@pytest.fixture(scope="module")
def calls():
    return table_of_calls([SEED])


def wrong_values(value):
    """Values that a function refuses for this one, each for another reason."""
    yield object()
    if isinstance(value, np.ndarray):
        yield value.astype(value.dtype.newbyteorder())
        yield value[..., np.newaxis]
        yield np.zeros(value.shape, dtype=np.int16)
        constant = value.copy()
        constant.flags.writeable = False
        yield constant
    elif isinstance(value, list):
        yield [*value, None]
        yield [object()]
    elif isinstance(value, (int, float)):
        yield "text"
        yield 2**70


def variants(arguments):
    """The arguments as they are, and with one wrong value each."""
    yield arguments
    for name, value in arguments.items():
        for wrong in wrong_values(value):
            yield {**arguments, name: wrong}


def repeat(name, arguments, count):
    for _ in range(count):
        # A list of trees would grow with each call.
        own = {key: copy.copy(value) if hasattr(value, "append") else value
               for key, value in arguments.items()}
        try:
            call_with(name, own)
        except (TypeError, ValueError):
            pass


def counts(objects):
    return [sys.getrefcount(value) for value in objects]


@pytest.mark.parametrize("name", sorted(_core._signatures))
def test_calls_leave_nothing_behind(calls, name):
    seed, before, _, _ = calls[name][0]
    all_variants = list(variants(python_arguments(name, seed, before)))
    # Numbers and dtypes of numbers are shared with the rest of the program.
    objects = [value for given in all_variants for value in given.values()
               if not isinstance(value, (int, float, str))]
    objects += [value.dtype for value in objects
                if isinstance(value, np.ndarray) and value.dtype.names]
    shared = [None, np.ndarray, np.dtype(np.float64), _core.STesk3DPosition.dtype]
    share = CALLS // len(all_variants) + 1
    with warnings.catch_warnings():
        warnings.simplefilter("ignore")
        for given in all_variants:
            repeat(name, given, 20)  # fills caches
        gc.collect()
        start = counts(objects), counts(shared), sys.getallocatedblocks(), allocated_bytes()
        for given in all_variants:
            repeat(name, given, share)
        gc.collect()
        assert counts(objects) == start[0]
        assert np.abs(np.subtract(counts(shared), start[1])).max() < CALLS / 10
    assert sys.getallocatedblocks() - start[2] < CALLS / 10
    assert allocated_bytes() - start[3] < CALLS  # less than a byte a call
