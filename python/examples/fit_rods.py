"""Finds round rods on a floor on a line, and fits circles to them."""
import sys

import numpy as np

import scanline
from scanline import plot

FLOOR = 400.0


def make_line():
    """A line across a floor with two rods on it, of radius 10 mm and 6 mm."""
    y = 0.2 * np.arange(600)
    z = np.full(600, FLOOR)
    for centre, radius in ((35.0, 10.0), (85.0, 6.0)):
        is_on_rod = np.abs(y - centre) < radius
        z[is_on_rod] = FLOOR - radius - np.sqrt(radius ** 2 - (y[is_on_rod] - centre) ** 2)
    return scanline.as_line(y, z)


def fit_circle(line, arc):
    """The fit is in the x-y plane; here that is the plane of the line."""
    samples = line[arc["startPtIdx"]:arc["endPtIdx"] + 1]["pt3D"]
    points = np.zeros(len(samples), dtype=scanline.point_dtype)
    points["x"], points["y"] = samples["y"], samples["z"]
    return scanline.fitCircleByLeastSquare(points)


def main(picture):
    line = make_line()
    corner = scanline.SQO_cornerParam(minEndingGap=0.0, minEndingGap_z=50.0, scale=1.5,
                                      cornerTh=60.0, jumpCornerTh_1=0.0, jumpCornerTh_2=0.0)
    arcs = scanline.ju_getRingArcFeature(line, 0, corner, (8.0, 30.0))

    ax = plot.profile(line, arcs, title="Two rods on a floor")
    turn = np.linspace(0.0, 2.0 * np.pi, 100)
    for arc in arcs:
        fit = fit_circle(line, arc)
        y, z = fit.center.x, fit.center.y
        print(f"rod of radius {fit.radius:.2f} mm, centre at y = {y:.2f}, z = {z:.2f}")
        ax.plot(y + fit.radius * np.cos(turn), z + fit.radius * np.sin(turn), "--", color="#26548c")
        ax.annotate(f"radius {fit.radius:.2f} mm", (y, z - fit.radius), (0, 4), ha="center",
                    textcoords="offset points")
    ax.set(aspect="equal", ylim=(405.0, 373.0))
    ax.figure.set_size_inches(9.0, 3.4)
    ax.figure.savefig(picture)


if __name__ == "__main__":
    main(sys.argv[1])
