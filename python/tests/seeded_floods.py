"""Floods random small images by the library and in the plainest form: seeded_floods.py COUNT

Where the plain form finds pixels that no label reaches, the call must be refused: C++ would wait
for them forever.
"""
import sys

import numpy as np

import scanline


def labels_around(markers, y, x):
    around = markers[max(y - 1, 0):y + 2, max(x - 1, 0):x + 2]
    return set(around[around > 0].tolist())


def fill_plateau(gray, markers, y, x, label):
    """Labels the pixels of the seed's value that connect to it over four neighbours."""
    todo = [(y, x)]
    for row, column in todo:
        for near in ((row - 1, column), (row, column - 1), (row, column + 1), (row + 1, column)):
            if min(near) >= 0 and near[0] < gray.shape[0] and near[1] < gray.shape[1] \
                    and markers[near] == 0 and gray[near] == gray[y, x]:
                markers[near] = label
                todo.append(near)


def plain_flood(gray, markers, seeds, max_level, label):
    """Floods level by level until nothing settles; returns whether pixels are left over."""
    for seed in seeds:
        markers[seed["y"], seed["x"]] = label
        fill_plateau(gray, markers, seed["y"], seed["x"], label)
        label += 1
    levels = [[tuple(at) for at in np.argwhere(gray == level) if markers[tuple(at)] <= 0]
              for level in range(max_level + 1)]
    settles = True
    while settles and any(levels):
        settles = False
        for level, pixels in enumerate(levels):
            again = True
            while again:
                waiting = []
                for y, x in levels[level]:
                    labels = labels_around(markers, y, x)
                    if labels:
                        markers[y, x] = labels.pop() if len(labels) == 1 else -1
                    else:
                        waiting.append((y, x))
                again = len(waiting) < len(levels[level])
                settles = settles or again
                levels[level] = waiting
    return any(levels)


def compare(random):
    """Floods one image both ways; returns whether it was refused."""
    shape = tuple(random.integers(1, 9, 2))
    levels = random.integers(1, 5)
    gray = random.integers(0, levels, shape).astype(np.int32)
    # Few markers, so that many a flood meets dead ends.
    markers = np.where(random.random(shape) < 0.06, random.integers(-1, 4, shape), 0)
    markers = markers.astype(np.int32)
    seeds = np.zeros(random.integers(0, 4), dtype=scanline.peak_dtype)
    seeds["x"] = random.integers(0, shape[1], len(seeds))
    seeds["y"] = random.integers(0, shape[0], len(seeds))
    max_level = int(random.integers(-1, levels + 1))
    expected = markers.copy()
    is_left = plain_flood(gray, expected, seeds, max_level, 2)
    image = scanline.SJU_waterShedImage(gray=gray, markers=markers.copy())
    try:
        scanline.ju_seedWatershed(image, seeds, max_level, 2)
    except ValueError as error:
        assert is_left and "image.gray" in str(error) and (image.markers == markers).all(), error
        return True
    assert not is_left and (image.markers == expected).all(), (gray, markers, seeds, max_level)
    return False


def main(count):
    random = np.random.default_rng(5)
    refused = sum(compare(random) for _ in range(count))
    print(f"{refused} of {count} refused")
    assert count / 10 < refused < count * 0.9


if __name__ == "__main__":
    main(int(sys.argv[1]))
