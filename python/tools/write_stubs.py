#!/usr/bin/env python3
"""Writes the stubs of the package from what the extension module records: write_stubs.py FOLDER

FOLDER is that of the package, which must be importable.
"""
import re
import sys
from pathlib import Path

import scanline
from scanline import _core

HEAD = '''# Written by write_stubs.py.
from collections.abc import Iterable, Iterator, Mapping, Sequence
from typing import Any, ClassVar, NamedTuple, Union, overload

import numpy as np
from numpy.typing import ArrayLike, NDArray

# A two-dimensional array, or a list of lines.
_Scan = Union[NDArray[np.void], Sequence[NDArray[np.void]]]

__version__: str

class CopyWarning(UserWarning): ...
'''
NUMBERS = {"int": "int", "float": "float", "double": "float", "bool": "bool", "uint32": "int",
           "uint64": "int"}
RECORD = '''
class {name}:
    def __init__(self, *, {parameters}) -> None: ...
    def __eq__(self, other: object) -> bool: ...
    __hash__: ClassVar[None]  # type: ignore[assignment]
    def __getstate__(self) -> tuple[Any, ...]: ...
    def __setstate__(self, state: tuple[Any, ...]) -> None: ...
'''
LIST = '''
class {name}s:
    @overload
    def __init__(self) -> None: ...
    @overload
    def __init__(self, trees: Iterable[{name}]) -> None: ...
    def __len__(self) -> int: ...
    def __iter__(self) -> Iterator[{name}]: ...
    @overload
    def __getitem__(self, index: int) -> {name}: ...
    @overload
    def __getitem__(self, index: slice) -> {name}s: ...
    def append(self, tree: {name} | Mapping[str, Any]) -> None: ...
    def __eq__(self, other: object) -> bool: ...
    __hash__: ClassVar[None]  # type: ignore[assignment]
    def __getstate__(self) -> tuple[Any, ...]: ...
    def __setstate__(self, state: tuple[Any, ...]) -> None: ...
'''
WATERSHED = '''
class SJU_waterShedImage:
    gray: NDArray[np.int32]
    markers: NDArray[np.int32]
    def __init__(self, *, gray: NDArray[np.int32], markers: NDArray[np.int32]) -> None: ...
'''


def read_type(text):
    """What a field of a C++ type is when it is read."""
    if text in NUMBERS:
        return NUMBERS[text]
    if text.startswith("[") or text.endswith(")"):
        item = text.strip("[]").partition("(")[0]
        scalar = {"double": "float64", "int": "int32"}.get(item, "void")
        return f"NDArray[np.{scalar}]"
    return text


def given_type(text):
    """What can be given for a field of a C++ type."""
    if text in NUMBERS or text.startswith("["):
        return read_type(text)
    if text.endswith(")"):
        return "ArrayLike"
    _, is_plain = _core._records[text]
    return f"{text} | Mapping[str, Any]" + " | Sequence[float]" * is_plain


def field_stub(name, text):
    setter = "" if text.startswith("[") else (
        f"    @{name}.setter\n    def {name}(self, value: {given_type(text)}) -> None: ...\n")
    return f"    @property\n    def {name}(self) -> {read_type(text)}: ...\n{setter}"


def record_stub(name):
    fields, _ = _core._records[name]
    parameters = ", ".join(f"{field}: {given_type(text)}" for field, text in fields)
    stub = RECORD.format(name=name, parameters=parameters)
    stub += "".join(field_stub(*field) for field in fields)
    if hasattr(getattr(_core, name), "nodes"):
        stub += "    @property\n    def nodes(self) -> NDArray[np.void]: ...\n"
    if hasattr(getattr(_core, name), "dtype"):
        stub += "    dtype: ClassVar[np.dtype[np.void]]\n"
    return stub


def result_stub(name, results):
    """The type that a function returns, and the stub of its named tuple if it has one."""
    if len(results) < 2:
        return (results[0][1] if results else "None"), ""
    fields = "".join(f"    {field}: {text}\n" for field, text in results)
    return f"{name}_result", f"\nclass {name}_result(NamedTuple):\n{fields}"


def function_stub(name):
    signature = _core._signatures[name]
    entries = signature["parameters"]
    parameters = [f"{entry}: {text}" for entry, text, kind in entries if kind == "position"]
    keywords = [f"{entry}: {text} = ..." for entry, text, kind in entries if kind == "keyword"]
    parameters += ["*", *keywords] if keywords else []
    returned, stub = result_stub(name, signature["results"])
    return f"{stub}\ndef {name}({', '.join(parameters)}) -> {returned}: ...\n"


def core_stub():
    stub = HEAD + "".join(map(record_stub, _core._records)) + WATERSHED
    stub += "".join(LIST.format(name=name) for name in _core._records
                    if hasattr(_core, name + "s"))
    functions = "".join(map(function_stub, _core._signatures))
    return stub + re.sub(r"\bScan\b", "_Scan", functions)


def package_stub():
    """The stub of the package itself, whose names come from its modules at run time."""
    imports = ["from scanline._core import *",
               "from scanline._core import __version__ as __version__"]
    values = []
    for name in scanline.__all__:
        value = getattr(scanline, name)
        module = getattr(value, "__module__", "")
        if isinstance(value, (scanline.FeatureType, scanline.TreeState)):
            values.append(f"{name}: {type(value).__name__}")
        elif name.endswith("_dtype"):
            values.append(f"{name}: np.dtype[np.void]")
        elif module.startswith("scanline._") and module != "scanline._core":
            imports.append(f"from {module} import {name} as {name}")
    names = "".join(f"    {name!r},\n" for name in scanline.__all__)
    head = ["# Written by write_stubs.py.", "import numpy as np", ""]
    return "\n".join([*head, *imports, "", *values, "", f"__all__ = [\n{names}]"]) + "\n"


def main(folder):
    Path(folder, "_core.pyi").write_text(core_stub())
    Path(folder, "__init__.pyi").write_text(package_stub())


if __name__ == "__main__":
    main(*sys.argv[1:])
