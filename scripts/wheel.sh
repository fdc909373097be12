#!/usr/bin/env bash
# Builds the wheel of the Python package and tries it: wheel.sh [FOLDER]
#
# Works offline with the build tools of the system. The wheel is installed into a new environment,
# where the line of the package's first example is traced; then it is copied to FOLDER, if given.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

/usr/bin/python3 -m venv --system-site-packages "$work/venv"
python=$work/venv/bin/python
"$python" -m pip wheel --quiet --no-build-isolation --no-deps --no-index --wheel-dir "$work" "$root"
"$python" -m pip install --quiet --no-deps --no-index "$work"/scanline-*.whl

cd "$work"
"$python" - <<'END'
import doctest
import pathlib

import scanline

folder = pathlib.Path(scanline.__file__).parent
assert (folder / "_core.pyi").exists() and (folder / "py.typed").exists()
failed, tried = doctest.testmod(scanline)
assert tried > 0 and failed == 0
END
if readelf -d "$work"/venv/lib/python*/site-packages/scanline/_core*.so | grep -q libscanline; then
  echo "wheel.sh: the module needs libscanline, which is not in the wheel" >&2
  exit 1
fi
echo "wheel.sh: $(basename "$work"/scanline-*.whl) works"
if [[ -n ${1-} ]]; then
  cp "$work"/scanline-*.whl "$1"
fi
