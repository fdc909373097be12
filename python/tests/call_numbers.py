"""Arguments and results of calls as plain values: a word for each number, a tuple for a record or
an image, a list for a list. The words are those of `scanline_call_tests --numbers`.
"""
import struct

import numpy as np

import scanline
from scanline import _core

NUMBERS = {"int": np.int32, "float": np.float32, "double": np.float64, "bool": np.bool_,
           "uint32": np.uint32, "uint64": np.uint64}
DEPTHS = {0: np.uint8, 4: np.int32, 5: np.float32, 6: np.float64}
WATERSHED = [("width", "int"), ("height", "int"), ("gray", "[[int]]"), ("markers", "[[int]]")]


def fields_of(type_text):
    """Names and types of the fields of a record; of `double(3)` the three numbers."""
    if type_text == "SJU_waterShedImage":
        return WATERSHED
    if type_text.endswith(")"):
        item, _, count = type_text[:-1].partition("(")
        return [(str(i), item) for i in range(int(count))]
    return _core._records[type_text][0]


def is_list(type_text):
    return type_text.startswith("[")


def dtype_of(type_text):
    """The dtype of arrays of a type, or None for a record that has none."""
    return NUMBERS.get(type_text.partition("(")[0]) or getattr(
        getattr(_core, type_text, None), "dtype", None)


def parsed(type_text, words):
    """The plain value of a type from an iterator over words."""
    if is_list(type_text):
        return [parsed(type_text[1:-1], words) for _ in range(int(next(words)[1:]))]
    if type_text in NUMBERS:
        return next(words)
    if type_text == "image":
        return tuple(words)
    return tuple(parsed(field, words) for _, field in fields_of(type_text))


def number(word):
    if word[0] == "d":
        return struct.unpack(">d", bytes.fromhex(word[1:]))[0]
    if word[0] == "f":
        return struct.unpack(">f", bytes.fromhex(word[1:]))[0]
    return int(word[1:])


def items(type_text, plain):
    """A plain value as what NumPy makes an element of an array of."""
    if type_text in NUMBERS:
        return number(plain)
    parts = tuple(items(field, value) for (_, field), value in zip(fields_of(type_text), plain))
    return list(parts) if type_text.endswith(")") else parts


def image(plain):
    """An image as the array of Python, with a gap after each row."""
    rows, columns, kind = (int(word[1:]) for word in plain[:3])
    channels = kind // 8 + 1
    whole = np.zeros((rows, columns + 1, channels), dtype=DEPTHS[kind % 8])
    pixels = whole[:, :columns] if channels > 1 else whole[:, :columns, 0]
    if channels == 1:
        pixels = np.zeros((rows, columns + 3), dtype=whole.dtype)[:, :columns]
    pixels[...] = np.array([number(word) for word in plain[3:]]).reshape(pixels.shape)
    return pixels


def built(type_text, plain):
    """The Python object for a plain value of a type."""
    if type_text in NUMBERS:
        return bool(number(plain)) if type_text == "bool" else number(plain)
    if type_text == "image":
        return image(plain)
    if type_text == "SJU_waterShedImage":
        planes = [np.array(built("[[int]]", rows)).reshape(len(rows), -1) for rows in plain[2:]]
        return scanline.SJU_waterShedImage(gray=planes[0], markers=planes[1])
    if is_list(type_text):
        item = type_text[1:-1]
        dtype = dtype_of(item)
        if is_list(item) or dtype is None:
            objects = [built(item, value) for value in plain]
            trees = getattr(_core, item + "s", None)
            return objects if trees is None else trees(objects)
        shape = (len(plain), len(fields_of(item))) if item.endswith(")") else len(plain)
        return np.array([items(item, value) for value in plain], dtype=dtype).reshape(shape)
    if type_text.endswith(")"):
        return np.array(items(type_text, plain))
    return getattr(_core, type_text)(**{name: built(field, value) for (name, field), value
                                        in zip(fields_of(type_text), plain)})


def word_of(type_text, value):
    """The word of a number; all NaNs have the same."""
    if type_text in ("float", "double"):
        value = float("nan") if value != value else value
        return type_text[0] + struct.pack(f">{type_text[0]}", value).hex()
    return ("i" if type_text == "int" else "n") + str(int(value))


def plain_of(type_text, value):
    """The plain value of a Python object: the converse of `built`."""
    if type_text in NUMBERS:
        return word_of(type_text, value)
    if type_text == "image":
        return plain_image(value)
    if type_text == "SJU_waterShedImage":
        gray = value.gray
        return ("i%d" % gray.shape[1], "i%d" % gray.shape[0], plain_of("[[int]]", gray),
                plain_of("[[int]]", value.markers))
    if is_list(type_text):
        item = type_text[1:-1]
        values = value.tolist() if hasattr(value, "dtype") else value
        return [plain_of(item, one) for one in values]
    if type_text.endswith(")") and not isinstance(value, (list, tuple)):
        # A point of OpenCV is a record of ours in Python.
        value = np.ravel(value) if isinstance(value, np.ndarray) else (value.x, value.y, value.z)
    fields = fields_of(type_text)
    if isinstance(value, (list, tuple, np.ndarray)):
        return tuple(plain_of(field, one) for (_, field), one in zip(fields, value))
    return tuple(plain_of(field, getattr(value, name)) for name, field in fields)


def plain_image(pixels):
    channels = pixels.shape[2] if pixels.ndim == 3 else 1
    depth = next(depth for depth, dtype in DEPTHS.items() if dtype == pixels.dtype)
    names = {0: "uint8", 4: "int", 5: "float", 6: "double"}
    return ("n%d" % pixels.shape[0], "n%d" % pixels.shape[1],
            "n%d" % (depth + 8 * (channels - 1)),
            *(word_of(names[depth], value) for value in np.ravel(pixels).tolist()))
