"""TIFF and PNG: images of x, y and z, and range images."""
import numpy as np

from scanline._packages import package

_LOSSY_COMPRESSIONS = {6: "JPEG", 7: "JPEG", 34676: "SGILOG", 34677: "SGILOG24",
                       34712: "JPEG 2000", 34887: "LERC", 50001: "WebP", 50002: "JPEG XL"}
_LOGARITHMIC_COLOURS = {32844: "LogL", 32845: "LogLuv"}
RANGE_TYPES = ("f4", "f8", "i2", "u2")
_WANTED = ("expected three float channels x, y, z, or a range image of one 16-bit channel, in TIFF "
           "also of one float channel")


def read_tiff(path):
    tifffile = package("tifffile", path)
    try:
        with tifffile.TiffFile(path) as file:
            _refuse_tiff(path, file)
            values = _decode_tiff(path, file.pages[0])
    except (tifffile.TiffFileError, IndexError, TypeError, OverflowError, OSError) as error:
        raise ValueError(f"{path}: is a damaged TIFF, or cut short: {error}") from error
    is_points = values.ndim == 3 and values.shape[2] == 3 and values.dtype.kind == "f"
    return values if is_points else _range_image(path, values)


def _refuse_tiff(path, file):
    page = file.pages[0]
    lossy = (_LOGARITHMIC_COLOURS.get(int(page.photometric))
             or _LOSSY_COMPRESSIONS.get(int(page.compression)))
    if lossy:
        raise ValueError(
            f"{path}: stores its values in a lossy encoding ({lossy}), so they are not what was "
            "measured. Write it again without loss: scanline.io.write, or with OpenCV "
            "imwrite(file, image, [IMWRITE_TIFF_COMPRESSION, 1])")
    if len(file.pages) > 1:
        raise ValueError(f"{path}: holds several pages. Save each scan to a file of its own")
    if int(page.photometric) > 2:
        raise ValueError(f"{path}: holds colours ({page.photometric.name}), not a scan")
    if page.samplesperpixel > 1 and int(page.planarconfig) != 1:
        raise ValueError(f"{path}: holds x, y and z in separate planes. Save them interleaved")
    if "Orientation" in page.tags and page.tags["Orientation"].value != 1:
        raise ValueError(f"{path}: is marked as turned or mirrored. Save it with its first row on "
                         "top")


def _decode_tiff(path, page):
    try:
        return page.asarray()
    except Exception as error:  # each decoder has its own class of errors
        if "imagecodecs" not in str(error):
            raise ValueError(f"{path}: is damaged or cut short: {error}") from error
        if page.samplesperpixel == 1:
            # LZW above all, which OpenCV chooses for range images if nothing is named.
            return _read_pixels(path)
        raise ValueError(f"{path}: has the compression {page.compression.name}, which needs the "
                         "package imagecodecs. Install it, or save the file without compression or "
                         "with Deflate") from error


def _read_pixels(path):
    image = package("PIL.Image", path)
    try:
        with image.open(path) as file:
            if path.suffix.lower() == ".png" and file.mode == "I":
                return np.asarray(file).astype(np.uint16)  # the older Pillow's word for 16 bits
            return np.asarray(file)
    except (OSError, SyntaxError) as error:
        raise ValueError(f"{path}: is no image, is damaged or cut short: {error}") from error


def read_png(path):
    return _range_image(path, _read_pixels(path))


def _range_image(path, values):
    if values.ndim != 2 or values.dtype.newbyteorder("=") not in RANGE_TYPES:
        raise ValueError(f"{path}: {_WANTED}, got {values.dtype} of shape {values.shape}")
    return values


def write_tiff(path, points):
    package("tifffile", path).imwrite(path, points.astype(np.float32), photometric="rgb",
                                      planarconfig="contig", compression="zlib", metadata=None)


def write_png(path, points, pitch_z):
    image = package("PIL.Image", path)
    steps = np.rint(points[..., 2] / pitch_z)
    is_measured = points[..., 2] > 0.0
    if not ((steps >= 1.0) & (steps <= 65535.0))[is_measured].all():
        raise ValueError("pitch_z: expected one that makes z 1 to 65535 steps, got "
                         f"{steps[is_measured].min():g} to {steps[is_measured].max():g}")
    image.fromarray(steps.astype(np.uint16)).save(path)
