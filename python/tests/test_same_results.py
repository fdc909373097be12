"""The same bits from Python and from C++, for calls of every exported function."""
import os

import pytest
from call_numbers import plain_of
from call_table import REPLACED, call_in_python, table_of_calls

from scanline import _core

SEEDS = os.environ.get("SCANLINE_CALL_SEEDS", "0 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15").split()

# C++ leaves `lineIdx` of the result to the caller; Python sets it to its own argument.
LINE_LEFT_UNSET = ("qo_getLineLVFeature", "qo_getLineRigthAngleFeature")


@pytest.fixture(scope="module")
def calls():
    return table_of_calls(SEEDS)


def compare(name, call):
    seed, before, after, result = call
    signature = _core._signatures[name]
    arguments, results = call_in_python(name, seed, before)
    if result is not None:
        assert plain_of(signature["result"], results["result"]) == result
    for (argument, text, role), old, new in zip(signature["arguments"], before, after):
        if "returned" in role:
            if name in LINE_LEFT_UNSET:
                new = (before[2], *new[1:])
            assert plain_of(text, results[argument]) == new, argument
        if "read" in role and (name, argument) not in REPLACED:
            assert plain_of(text, arguments[argument]) == old, argument
        if role == "changed":
            assert plain_of(text, arguments[argument]) == new, argument


def is_refusal(name, error):
    """Whether Python checks what the function leaves to its caller, and names the argument."""
    signature = _core._signatures[name]
    named = str(error).split(":")[0].split(".")[0]
    return signature["is_checked"] and named in [entry[0] for entry in signature["arguments"]]


@pytest.mark.parametrize("name", sorted(_core._signatures))
def test_same_bits(calls, name):
    refused = 0
    for call in calls[name]:
        try:
            compare(name, call)
        except ValueError as error:
            assert is_refusal(name, error), error
            refused += 1
    assert refused < len(calls[name])


def test_table_is_complete(calls):
    assert set(calls) == set(_core._signatures) and len(calls) == 90
