"""Strategies of hypothesis for arguments of any type: sound ones, and others."""
import numpy as np
from call_numbers import DEPTHS, NUMBERS, dtype_of, fields_of, is_list
from hypothesis import strategies as st

import scanline
from scanline import _core

WRONG_KINDS = st.sampled_from([None, "text", b"bytes", 1.5, object(), [1, "a"], {}, {"x": 1}, (),
                               np.array(3.0), np.array("text"), range(3), {1, 2}, 2**80])
SPECIAL_REALS = [float("nan"), float("inf"), -float("inf"), 0.0, -0.0, 5e-324, 1e308, -1e308, 1e-4,
                 2147483648.0, -2147483649.0, 1e18]
SPECIAL_INTS = [-2**31, 2**31 - 1, -1, 0, 1, 16, 65536]


def reals():
    steps = st.integers(-20, 200).map(lambda n: n / 4)
    return st.one_of(steps, steps, steps, st.sampled_from(SPECIAL_REALS))


def integers():
    small = st.integers(0, 9)
    return st.one_of(small, small, small, st.integers(-3, 40), st.sampled_from(SPECIAL_INTS))


def fill(random, array):
    """Sets numbers of an array of any dtype: small ones, and now and then a special one."""
    if array.dtype.names:
        for name in array.dtype.names:
            fill(random, array[name])
    elif array.dtype.kind == "f":
        array[...] = np.round(random.normal(5, 4, array.shape) * 4) / 4
        if random.random() < 0.3:
            array[random.random(array.shape) < 0.1] = random.choice(SPECIAL_REALS)
    elif array.dtype.kind in "iu":
        array[...] = random.integers(0, 4, array.shape)
        if random.random() < 0.2:
            special = random.choice(SPECIAL_INTS)
            array[random.random(array.shape) < 0.1] = special if array.dtype.kind == "i" else 7
    return array


def ordinary(random, dtype, shape):
    """An array of sound values: increasing y, samples stamped with their index."""
    with np.errstate(over="ignore"):
        array = fill(random, np.zeros(shape, dtype=dtype))
    if dtype == scanline.position_dtype and random.random() < 0.7:
        array["nPointIdx"] = np.arange(shape[-1]) if shape else 0
        array["pt3D"]["y"] = np.sort(array["pt3D"]["y"], axis=-1)
    return array


class Subclass(np.ndarray):
    """A subclass without anything of its own."""


def odd_address(array):
    raw = np.zeros(array.nbytes + 1, dtype=np.uint8)
    moved = raw[1:].view(array.dtype).reshape(array.shape)
    moved[...] = array
    return moved


def read_only(array):
    array.flags.writeable = False
    return array


def packed(array):
    """The same fields without padding, or another number."""
    if array.dtype.names:
        return array.astype([(name, array.dtype[name]) for name in array.dtype.names])
    return array.astype(np.float32 if array.dtype != np.float32 else np.float64)


def renamed(array):
    """The same fields under other names, or a record of one number."""
    names = array.dtype.names
    return array.astype([("other" + name, array.dtype[name]) for name in names] if names
                        else [("number", array.dtype)])


def columns_apart(array):
    wide = np.zeros((*array.shape[:-1], 2 * array.shape[-1]), dtype=array.dtype)
    wide[..., ::2] = array
    return wide[..., ::2]


def rows_apart(array):
    return np.concatenate([array, array], axis=-1)[..., :array.shape[-1]] if array.ndim else array


CHANGES = [
    lambda a: a[..., ::-1], lambda a: a[::-1], columns_apart, rows_apart,
    np.asfortranarray, lambda a: a.T, lambda a: np.broadcast_to(a[:1], a.shape),
    lambda a: np.lib.stride_tricks.as_strided(a, strides=(0,) * a.ndim), odd_address, read_only,
    lambda a: a.view(Subclass), np.ma.masked_array, lambda a: a[:0],
    lambda a: a[..., :0], lambda a: a[..., np.newaxis], lambda a: a[np.newaxis],
    lambda a: a.reshape(-1)[0], lambda a: a.reshape(-1)[:1].reshape(()), packed, renamed,
    lambda a: a.astype(a.dtype.newbyteorder()), lambda a: a.astype(object), lambda a: a.tolist(),
    lambda a: a.copy().view(np.uint8), lambda a: memoryview(a.copy().view(np.uint8)),
    lambda a: a[..., :1], lambda a: np.concatenate([a, a]),
]


@st.composite
def arrays(draw, dtype, axes, columns=1):
    """An array, sometimes changed into one that does not suit."""
    random = np.random.default_rng(draw(st.integers(0, 2**32 - 1)))
    shape = [draw(st.integers(0, 24)) for _ in range(axes)] + [columns] * (columns > 1)
    array = ordinary(random, dtype, tuple(shape))
    if draw(st.integers(0, 3)) == 0:
        try:
            return draw(st.sampled_from(CHANGES))(array)
        except (ValueError, TypeError, IndexError):  # NumPy cannot make it of this array
            pass
    return array


@st.composite
def scans(draw, item):
    """Two-dimensional arrays and lists of lines, some with lines that share memory."""
    dtype, columns = dtype_of(item), columns_of(item)
    if draw(st.booleans()):
        return draw(arrays(dtype, 2, columns))
    lines = draw(st.lists(arrays(dtype, 1, columns), max_size=5))
    if lines and draw(st.integers(0, 4)) == 0:
        lines.append(lines[0])
    return tuple(lines) if draw(st.integers(0, 5)) == 0 else lines


@st.composite
def images(draw):
    """Images of any depth; most often of one that the library takes."""
    dtype = draw(st.sampled_from([*DEPTHS.values(), *DEPTHS.values(), np.bool_, np.int64]))
    columns = draw(st.sampled_from([1, 1, 1, 2, 4, 3]))
    image = draw(arrays(np.dtype(dtype), 2, columns))
    binary = draw(st.booleans())
    return image % 2 if binary and isinstance(image, np.ndarray) and image.dtype.kind in "iu" \
        else image


@st.composite
def watershed_images(draw):
    """Images with planes of the same shape or not."""
    gray = draw(arrays(np.dtype(np.int32), 2))
    markers = draw(arrays(np.dtype(np.int32), 2)) if draw(st.integers(0, 3)) == 0 else \
        np.zeros(np.shape(gray), dtype=np.int32)
    return scanline.SJU_waterShedImage(gray=gray, markers=markers)


def columns_of(item):
    return int(item[:-1].partition("(")[2]) if item.endswith(")") else 1


@st.composite
def records(draw, name):
    """An object of a record's class, or a dict of its fields that may miss one."""
    fields = {field: draw(sound(text)) for field, text in fields_of(name)}
    kind = draw(st.integers(0, 9))
    if kind == 0:
        fields.pop(draw(st.sampled_from(sorted(fields))))
    if kind == 1:
        fields[draw(st.sampled_from([*fields, "other"]))] = draw(WRONG_KINDS)
    if kind < 5:
        return fields
    try:
        return getattr(_core, name)(**fields)
    except (ValueError, TypeError):
        return fields


def tree_lists(name):
    """Lists of trees, and lists of other trees."""
    lists = [getattr(_core, record + "s") for record in _core._records
             if hasattr(_core, record + "s")]
    own = st.lists(records(name), max_size=3).map(lambda trees: getattr(_core, name + "s")(
        [tree for tree in trees if not isinstance(tree, dict) and len(tree.treeNodes) > 0]))
    return st.one_of(own, own, st.sampled_from(lists).map(lambda kind: kind()))


def sound(text):
    """A strategy for a type as `_signatures` names it."""
    if text in ("float", "double"):
        return reals()
    if text == "bool":
        return st.booleans()
    if text in NUMBERS:
        return integers()
    if text == "image":
        return images()
    if text == "SJU_waterShedImage":
        return watershed_images()
    if text.startswith("[["):
        return scans(text[2:-2])
    if is_list(text):
        item = text[1:-1]
        if dtype_of(item) is not None:
            return arrays(np.dtype(dtype_of(item)), 1, columns_of(item))
        return tree_lists(item) if hasattr(_core, item + "s") else st.lists(records(item),
                                                                            max_size=4)
    if text.endswith(")"):
        return st.lists(reals(), min_size=columns_of(text), max_size=columns_of(text)).map(np.array)
    return records(text)


def perturbed(random, value):
    """A sound value, most often with a special number somewhere in it."""
    if isinstance(value, np.ndarray) and value.size > 0 and random.random() < 0.6:
        while value.dtype.names:
            value = value[random.choice(value.dtype.names)]
        special = SPECIAL_REALS if value.dtype.kind == "f" else SPECIAL_INTS
        number = random.choice(special)
        if value.dtype.kind in "if":
            with np.errstate(over="ignore"):
                value[tuple(random.integers(0, size) for size in value.shape)] = number
    elif isinstance(value, list):
        for item in value[:3]:
            perturbed(random, item)


def hostile(text):
    """Mostly sound, now and then something else."""
    return st.integers(0, 15).flatmap(lambda n: WRONG_KINDS if n == 0 else sound(text))
