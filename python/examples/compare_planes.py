"""Levels a tilted table with a box on it by two calibrations, and compares tilt and height."""
import math
import sys

import numpy as np

import scanline
from scanline import plot


def make_scan():
    """z is a height here: the table is the surface of smallest z."""
    x, y = np.meshgrid(0.5 * np.arange(200), 0.25 * np.arange(400), indexing="ij")
    is_on_box = (x > 60.0) & (y > 60.0)
    z = 100.0 + 0.05 * x + 0.04 * y + np.where(is_on_box, 30.0, 0.0)
    return scanline.as_scan(np.stack([x, y, z], axis=-1))


def show(name, plane, scan):
    levelled = scan.copy()
    for line in levelled:
        scanline.lineDataRT_vector(line, plane.levelMatrix, 0.0)
    tilt = math.degrees(math.acos(plane.levelMatrix[8]))
    z = levelled["pt3D"]["z"]
    print(f"{name:8} tilt {tilt:.2f} deg, height {plane.planeHeight:.2f}; opposite corners of the "
          f"table at {z[0, 0]:.3f} and {z[0, -1]:.3f}")


def main(picture):
    scan = make_scan()
    planes = {
        "heights": scanline.qo_getPlaneCalibPara2(scan),
        # Where the table is known to be bare. The last limit is a second one of y.
        "region": scanline.qo_getPlaneCalibPara2_ROI(
            scan, {"xRange": (0.0, 50.0), "yRange": (0.0, 100.0), "zRange": (0.0, 100.0)}),
    }
    for name, plane in planes.items():
        show(name, plane, scan)

    rotation = np.reshape(planes["heights"].levelMatrix, (3, 3))
    angles = scanline.rotationMatrixToEulerZYX(rotation)
    print(f"roll {angles.roll:.2f}, pitch {angles.pitch:.2f}, yaw {angles.yaw:.2f} deg")
    plot.planes(scan, planes, z_is_height=True)[0].figure.savefig(picture)


if __name__ == "__main__":
    main(sys.argv[1])
