"""Text files of points or profiles."""
import re

import numpy as np

_SEPARATORS = (",", ";", "\t", None)  # None: any run of blanks and tabs
_HEAD = 100  # rows that decide about the layout
_MOST_COLUMNS_OF_POINTS = 8


def read(path):
    """Return coordinates of shape (lines, samples, 3), or profiles of shape (lines, samples)."""
    rows = _rows(path)
    separator = _separator(path, rows[:_HEAD])
    first = rows[0].split(separator)
    columns = len(first)
    ragged = next((row for row in rows if len(row.split(separator)) != columns), None)
    if ragged is not None:
        raise ValueError(f"{path}: expected {columns} columns as in its first row, found "
                         f"'{ragged[:60]}'")
    if all(map(_is_number, first)):
        if columns > _MOST_COLUMNS_OF_POINTS:
            return _numbers(path, rows, separator, range(columns))
        return _split_into_lines(_points(_numbers(path, rows, separator, (0, 1, 2))))
    names = [re.split(r"[ _\[(]", name.strip().lower())[0] for name in first]
    return _read_named(path, rows[1:], separator, names)


def write(path, points):
    """Write the columns line, sample, x, y, z."""
    with path.open("w", encoding="ascii") as file:
        file.write("line,sample,x,y,z\n")
        for line, row in enumerate(points.tolist()):
            file.writelines(f"{line},{sample},{x!r},{y!r},{z!r}\n"
                            for sample, (x, y, z) in enumerate(row))


def _rows(path):
    try:
        text = path.read_text(encoding="utf-8-sig").replace('"', "")
    except UnicodeDecodeError as error:
        raise ValueError(f"{path}: is no text. Save it as ASCII or UTF-8") from error
    rows = [row for row in text.splitlines() if not re.match(r"\s*(#|//|$)", row)]
    if not rows:
        raise ValueError(f"{path}: holds no rows of numbers")
    return rows


def _is_number(field):
    try:
        return not field.strip() or float(field) is not None
    except ValueError:
        return False


def _separator(path, head):
    """Return what splits most rows into the same count of fields with three numbers at least."""
    for separator in _SEPARATORS:
        columns = len(head[0].split(separator))
        fields = [row.split(separator) for row in head]
        good = [len(row) == columns and sum(map(_is_number, row)) >= 3 for row in fields]
        if 2 * sum(good) >= len(good):
            return separator
    raise ValueError(f"{path}: is no table of numbers: neither comma, semicolon, tab nor blank "
                     "splits its first rows into the same count of 3 or more columns; decimal "
                     "points are expected, not commas")


def _numbers(path, rows, separator, columns):
    if separator is not None:
        empty = re.compile(rf"(^|{separator}) *(?={separator}|$)", re.MULTILINE)
        text = "\n".join(rows)
        if empty.search(text):
            rows = empty.sub(r"\1nan", text).split("\n")
    try:
        return np.loadtxt(rows, delimiter=separator, usecols=columns, comments=None, ndmin=2)
    except ValueError as error:
        raise ValueError(f"{path}: {error}") from error


def _points(numbers):
    """Return x, y and z of a table, NaN where there is no value."""
    points = numbers[:, :3]
    points[(points == 0.0).all(axis=1) | ~np.isfinite(points).all(axis=1)] = np.nan
    return points


def _read_named(path, rows, separator, names):
    def find(*known):
        return next((i for i, name in enumerate(names) if name in known), None)

    xyz = [find("x"), find("y"), find("z")]
    if None in xyz or not rows:
        raise ValueError(f"{path}: expected numbers, or a header with the columns x, y and z and "
                         f"rows of numbers, found the columns {', '.join(names)}")
    line, sample = find("line", "row", "profile"), find("sample", "col", "column", "point")
    indices = [i for i in (line, sample) if i is not None and line is not None]
    numbers = _numbers(path, rows, separator, xyz + indices)
    points = _points(numbers)
    if line is None:
        return _split_into_lines(points)
    return _placed(path, points, numbers[:, 3], numbers[:, 4] if sample is not None else None)


def _placed(path, points, line, sample):
    """Return the points at the places that their indices name; those left out are missing."""
    if not np.isfinite(line).all():
        raise ValueError(f"{path}: expected an index of a line in each row")
    values, line = np.unique(line, return_inverse=True)
    if sample is None:
        order = np.argsort(line, kind="stable")
        starts = np.searchsorted(line[order], np.arange(len(values)))
        sample = np.empty(len(line))
        sample[order] = np.arange(len(line)) - starts[line[order]]
    if not ((sample >= 0.0) & (sample == np.floor(sample))).all():
        raise ValueError(f"{path}: expected whole numbers of 0 or more as indices of samples")
    samples = int(sample.max()) + 1
    # A forged index must not cost more memory than a file of this length can need.
    if len(values) * samples > 8 * path.stat().st_size + 1_000_000:
        raise ValueError(f"{path}: expected indices of samples without such large gaps, found "
                         f"{samples - 1}")
    place = line * samples + sample.astype(int)
    if len(np.unique(place)) != len(place):
        raise ValueError(f"{path}: expected each sample of a line once")
    result = np.full((len(values) * samples, 3), np.nan)
    result[place] = points
    return result.reshape(len(values), samples, 3)


def _split_into_lines(points):
    """Return points in lines, which end where the axis that changes fast jumps back."""
    valid = np.flatnonzero(~np.isnan(points[:, 2]))
    steps = np.diff(points[valid, :2], axis=0)[np.diff(valid) == 1]
    lines = [points]
    if len(steps):
        across = np.median(np.abs(steps), axis=0)
        axis = 0 if across[0] > across[1] else 1
        usual = np.median(steps[:, axis])
        jumps = np.diff(points[valid, axis])
        lines = np.split(points, valid[1:][jumps / usual < -3.0] if usual else [])
    result = np.full((len(lines), max(map(len, lines)), 3), np.nan)
    for row, line in zip(result, lines):
        row[:len(line)] = line
    return result
