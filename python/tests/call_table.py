"""The calls of every exported function that the C++ tests make, and how to make them in Python."""
import os
import subprocess
from collections import defaultdict
from pathlib import Path

import numpy as np
import pytest
from call_numbers import built, parsed

import scanline
from scanline import _core

PROGRAM = os.environ.get("SCANLINE_CALL_TESTS", "")
# What the table has and Python refuses: marks on a line, and a matrix that is not read.
PREPARED = ["qo_getFlatLineLocalPeaks_vector:0=3"]
REPLACED = {("pointRT", "T"): np.zeros((3, 1))}


def calls_of(program, seeds):
    """For each function its calls: plain arguments before and after, and the plain result."""
    cleared = [f"{name}:{i}" for name, signature in _core._signatures.items()
               for i, (_, _, role) in enumerate(signature["arguments"]) if role == "returned"]
    lines = iter(subprocess.run([program, "--numbers", *seeds, *PREPARED, *cleared], check=True,
                                capture_output=True, text=True).stdout.split("\n"))
    calls = defaultdict(list)
    for head in filter(None, lines):
        name, seed, count = head.split()
        arguments = _core._signatures[name]["arguments"]
        assert len(arguments) == int(count)
        both = [[parsed_argument(name, argument, next(lines).split()) for argument in arguments]
                for _ in range(2)]
        result = next(lines).split()
        assert "broken" not in result
        text = _core._signatures[name]["result"]
        calls[name].append((int(seed), *both, parsed(text, iter(result)) if text else None))
    return calls


def parsed_argument(name, argument, words):
    _, text, role = argument
    if role == "count":
        return None
    # This function takes a pointer to one line: the first of the scan in the table.
    skipped = 1 if name == "lineDataRT" and text.startswith("[") else 0
    return parsed(text, iter(words[skipped:]))


def table_of_calls(seeds):
    """`calls_of` the program that the environment names; skips the tests without it."""
    if not Path(PROGRAM).is_file():
        pytest.skip("SCANLINE_CALL_TESTS is not the program scanline_call_tests")
    return calls_of(PROGRAM, seeds)


def python_argument(name, argument, plain, seed):
    """The Python object of an argument; a scan is an array or a list by turns."""
    text = argument[1]
    value = REPLACED.get((name, argument[0]))
    value = built(text, plain) if value is None else value
    if text.startswith("[[") and seed % 2 == 0 and len({len(line) for line in value}) == 1:
        return np.array(value)
    return value


def python_arguments(name, seed, before):
    """The Python objects of the arguments that are given, by name."""
    return {argument[0]: python_argument(name, argument, plain, seed)
            for argument, plain in zip(_core._signatures[name]["arguments"], before)
            if argument[2] not in ("count", "returned")}


def call_with(name, arguments):
    """Calls the function with arguments by name."""
    kinds = {entry: kind for entry, _, kind in _core._signatures[name]["parameters"]}
    positions = [arguments[entry] for entry, kind in kinds.items() if kind == "position"]
    keywords = {entry: arguments[entry] for entry, kind in kinds.items()
                if kind == "keyword" and entry in arguments}
    return getattr(scanline, name)(*positions, **keywords)


def call_in_python(name, seed, before):
    """Calls the function; returns its Python arguments and its results, both by name."""
    signature = _core._signatures[name]
    arguments = python_arguments(name, seed, before)
    taken = {entry: [] for entry, _, _ in signature["parameters"] if entry not in arguments}
    result = call_with(name, {**arguments, **taken})
    names = [entry for entry, _ in signature["results"]]
    results = dict(zip(names, result if len(names) > 1 else [result]))
    for entry, values in taken.items():
        assert len(values) == 1 and values[0] is results[entry]
    return arguments, results
