"""The strokes of `scanline.plot`: figures, height maps, labels."""
import numpy as np

_RIM = "#1a141f"
_MISSING = "#16161c"
_MOST_CELLS = 900  # along an axis of a map, more than a picture has pixels for


def pyplot():
    try:
        from matplotlib import pyplot as module
    except ImportError as error:
        raise ImportError("scanline.plot needs the package matplotlib, which is not installed: "
                          "'pip install matplotlib', or python3-matplotlib of Debian") from error
    return module


def new_figure(width, height):
    return _new_axes(1, width, height)


def _new_axes(columns, width, height):
    plt = pyplot()
    room = {"figure.constrained_layout.w_pad": 0.1, "figure.constrained_layout.h_pad": 0.1}
    with plt.rc_context(room):
        figure = plt.figure(figsize=(width, height), layout="constrained")
    return figure.subplots(1, columns)


def new_map_figure(points):
    ratio = _height_by_width(points)
    return new_figure(min(8.0, 1.6 + 5.2 / ratio), min(6.4, 1.0 + 6.0 * ratio))


def new_row(count, points):
    height = min(6.0, 1.2 + 3.2 * _height_by_width(points))
    return _new_axes(count, 4.8 * count, height)


def _height_by_width(points):
    measured = points[points[..., 2] != 0.0]
    x, y = np.ptp(measured[:, :2], axis=0) if len(measured) else (1.0, 1.0)
    return min(max(y, 1e-9) / max(x, 1e-9), 3.0)


def middle(points):
    """Return the limits of z of the middle 98 % of the measured samples."""
    z = points[..., 2][points[..., 2] != 0.0]
    low, high = np.quantile(z, (0.01, 0.99)) if z.size else (0.0, 1.0)
    room = 0.5 if high - low <= 1e-9 * max(abs(low), abs(high)) else 0.03 * (high - low)
    return low - room, high + room


def heights(ax, points, values, limits, colours, label, near_is_small):
    """Paint values at the places of samples, each sample as far as half the way to the next.

    What is near the sensor has the last of the colours, which is at the top of their bar.
    """
    if min(values.shape) < 2:
        raise ValueError("scan: expected two lines of two samples or more for a map, got "
                         f"{values.shape[0]} of {values.shape[1]}")
    steps = [-(-count // _MOST_CELLS) for count in values.shape]
    points, values = points[::steps[0], ::steps[1]], values[::steps[0], ::steps[1]]
    is_measured = points[..., 2] != 0.0
    x, y = (_corners(_bridged(points[..., axis], is_measured)) for axis in (0, 1))
    colour_map = pyplot().get_cmap(colours)
    mesh = ax.pcolormesh(x, y, np.ma.masked_array(values, ~is_measured), vmin=limits[0],
                         vmax=limits[1], rasterized=True,
                         cmap=colour_map.reversed() if near_is_small else colour_map)
    ax.set_facecolor(_MISSING)
    ax.set_aspect("equal")
    ends = points[is_measured]
    if len(ends):
        ax.set(xlim=(ends[:, 0].min(), ends[:, 0].max()), ylim=(ends[:, 1].min(), ends[:, 1].max()))
    # An inset follows the height of the axes, which the aspect decides.
    bar = ax.figure.colorbar(mesh, cax=ax.inset_axes((1.03, 0.0, 0.04, 1.0)), extend="both",
                             label=label)
    if near_is_small:
        bar.ax.invert_yaxis()


def _bridged(values, is_measured):
    """Return values with those of missing samples interpolated, so that the cells stay whole."""
    values = values.copy()
    index = np.arange(values.shape[1])
    for row, good in zip(values, is_measured):
        if good.any():
            row[~good] = np.interp(index[~good], index[good], row[good])
    good = is_measured.any(axis=1)
    if good.any() and not good.all():
        lines = np.arange(len(values))
        for column in values.T:
            column[~good] = np.interp(lines[~good], lines[good], column[good])
    return values


def _corners(values):
    wide = np.pad(values, 1, mode="reflect", reflect_type="odd")
    return 0.25 * (wide[:-1, :-1] + wide[1:, :-1] + wide[:-1, 1:] + wide[1:, 1:])


def name_axes(ax, unit):
    ax.set(xlabel=f"x, from line to line [{unit}]", ylabel=f"y, along the lines [{unit}]")


def marked(ax, curve, colour, name):
    """Draw a curve in y and z with a mark at both ends, or one mark."""
    ax.plot(curve[:, 1], curve[:, 2], "o-", color=colour, linewidth=3.0 if len(curve) > 1 else 0.0,
            markersize=7, markevery=max(len(curve) - 1, 1), markerfacecolor=colour,
            markeredgecolor=_RIM, label=name, zorder=4)


def rimmed(ax, path, colour, name):
    """Draw a path with a dark rim, so that it is seen on all colours of a map."""
    from matplotlib.patheffects import withStroke
    ax.plot(path[:, 0], path[:, 1], color=colour, linewidth=2.0, label=name, zorder=4,
            path_effects=[withStroke(linewidth=3.6, foreground=_RIM)])


def labels(ax, image, first, pixel, x0, y0):
    strong_and_pale = pyplot().get_cmap("tab20").colors
    palette = np.array(strong_and_pale[0::2] + strong_and_pale[1::2])
    colours = palette[(image - first) % len(palette)]
    colours[image < first] = (0.09, 0.09, 0.11)
    colours[image == -1] = (0.55, 0.55, 0.55)
    rows, columns = image.shape
    ax.imshow(colours, origin="lower", interpolation="nearest",
              extent=(x0 - 0.5 * pixel, x0 + pixel * (columns - 0.5),
                      y0 - 0.5 * pixel, y0 + pixel * (rows - 0.5)))


def box(ax, x, y, width, height):
    ax.add_patch(pyplot().Rectangle((x, y), width, height, fill=False, edgecolor="white",
                                    linewidth=1.2, zorder=3))


def finish(ax, title):
    """Set the title, and between title and axes a legend of what has a name."""
    handles, names = ax.get_legend_handles_labels()
    unique = dict(zip(names, handles))
    room = 6.0
    if unique:
        columns = min(len(unique), 4)
        ax.legend(unique.values(), unique.keys(), loc="lower left", bbox_to_anchor=(0.0, 1.0),
                  ncol=columns, frameon=False, fontsize="small", borderaxespad=0.2,
)
        room += 17.0 * -(-len(unique) // columns)
    if title:
        ax.set_title(title, loc="left", fontweight="bold", pad=room)


def number(ax, texts_and_places):
    """Write each text at the first of its places that is free, and leave out what has none."""
    ax.figure.draw_without_rendering()  # texts have a size once the axes have theirs
    area = ax.get_window_extent()
    taken = []
    for text, places in texts_and_places:
        for place in places:
            label = ax.annotate(text, place, ha="center", va="center", fontsize="small",
                                fontweight="bold", zorder=6, annotation_clip=True,
                                bbox={"boxstyle": "square,pad=0.2", "facecolor": "white",
                                      "edgecolor": "#787d8a", "linewidth": 0.8})
            extent = label.get_window_extent().padded(5.0)  # the frame and some room
            is_inside = area.contains(*extent.min) and area.contains(*extent.max)
            if is_inside and not any(extent.overlaps(other) for other in taken):
                taken.append(extent)
                break
            label.remove()
