"""Reference counts and memory stay as they are over many calls, whether they succeed or not."""
import copy
import ctypes
import gc
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
                "arena ordblks smblks hblks hblkhd usmblks fsmblks uordblks fordblks keepcost".split()]


def allocated_bytes():
    """Bytes that are allocated outside of Python's own allocator."""
    mallinfo = getattr(ctypes.CDLL(None), "mallinfo2", None)
    if mallinfo is None:
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


def is_used_up(name):
    """The names of arguments that a call changes, so that each call needs its own."""
    return [argument for argument, text, role in _core._signatures[name]["arguments"]
            if role in ("changed", "continued and returned") and not text.startswith("double")]


def repeat(name, arguments, used_up, count):
    for _ in range(count):
        own = dict(arguments)
        for argument in used_up:
            own[argument] = copy.copy(own[argument])
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
    trees = [argument for argument in used_up(name)
             if not isinstance(all_variants[0][argument], (np.ndarray, list))]
    objects = [value for given in all_variants for value in given.values()]
    objects += [value.dtype for value in objects if isinstance(value, np.ndarray)]
    objects += [None, np.ndarray, _core.STesk3DPosition.dtype]
    share = CALLS // len(all_variants) + 1
    with warnings.catch_warnings():
        warnings.simplefilter("ignore")
        for given in all_variants:
            repeat(name, given, trees, 20)  # fills caches
        gc.collect()
        start = counts(objects), sys.getallocatedblocks(), allocated_bytes()
        for given in all_variants:
            repeat(name, given, trees, share)
        gc.collect()
        assert counts(objects)[:-3] == start[0][:-3]
        assert np.abs(np.subtract(counts(objects)[-3:], start[0][-3:])).max() < 20
    assert sys.getallocatedblocks() - start[1] < 100
    assert allocated_bytes() - start[2] < CALLS  # less than a byte a call
