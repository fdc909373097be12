"""Splits two touching discs on a height map: projection, distances, peaks, seeded watershed."""
import sys

import numpy as np

import scanline
from scanline import plot

EDGE = 2  # pixels around the map
FIRST_LABEL = 2


def make_scan():
    """Two discs of radius 20 mm that touch, without ground: samples between them are missing."""
    x, y = np.meshgrid(np.arange(120.0), np.arange(120.0), indexing="ij")
    is_on_disc = (np.hypot(x - 30.0, y - 50.0) < 20.0) | (np.hypot(x - 68.0, y - 60.0) < 20.5)
    return scanline.as_scan(np.stack([x, y, np.where(is_on_disc, 300.0, 0.0)], axis=-1))


def basins_of(distances, max_level):
    """Distances from the border, inverted and in whole steps: the middles are deepest."""
    levels = np.where(distances > 0.0, max_level - distances.astype(np.int32), max_level + 1)
    return scanline.SJU_waterShedImage(gray=levels.astype(np.int32),
                                       markers=np.zeros(levels.shape, dtype=np.int32))


def main(picture):
    scan = make_scan()
    mask = np.zeros((124, 124), dtype=np.float32)
    sample_of_pixel = np.full((124, 124, 2), -1, dtype=np.int32)
    scanline.pointClout2DProjection(scan, (0.0, 119.0), (0.0, 119.0), 1.0, 0.0, EDGE, 0.0, mask,
                                    sample_of_pixel)
    distances = scanline.qo_distanceTrans(mask, 0)
    peaks = scanline.qo_getLocalPeaks_distTransform(
        distances, scanline.SQO_localPkParam(blockWidth=25, blockHeight=25))

    max_level = int(distances.max())
    image = basins_of(distances, max_level)
    scanline.ju_seedWatershed(image, peaks, max_level, FIRST_LABEL)

    labels = np.asarray(image.markers)
    for label, peak in enumerate(peaks, start=FIRST_LABEL):
        line, sample = sample_of_pixel[peak["y"], peak["x"]]
        middle = scan[line, sample]["pt3D"]
        print(f"object with its middle at ({middle['x']:.0f}, {middle['y']:.0f}), "
              f"{np.count_nonzero(labels == label)} mm2")
    ax = plot.regions(labels, first=FIRST_LABEL, x0=-EDGE, y0=-EDGE, unit="mm",
                      title="Two discs that touch")
    ax.figure.savefig(picture)


if __name__ == "__main__":
    main(sys.argv[1])
