"""Packages that only some functions need."""
import importlib

_NAMES = {"tifffile": ("tifffile", "python3-tifffile"), "PIL": ("Pillow", "python3-pil"),
          "meshio": ("meshio", "python3-meshio")}


def package(name, path):
    """Return a module. If its package is not installed, the error states what needs it."""
    try:
        return importlib.import_module(name)
    except ImportError as error:
        pip, debian = _NAMES[name.partition(".")[0]]
        raise ImportError(f"{path}: {path.suffix} files need the package {pip}, which is not "
                          f"installed: 'pip install {pip}', or {debian} of Debian") from error
