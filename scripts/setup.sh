#!/usr/bin/env bash
# Installs what scanline is built with from the packages of Debian or Ubuntu: setup.sh [--test | --dev]
#
# Quick when nothing is missing. With --test also what scripts/test.sh needs, with --dev also the
# tools of the other scripts. Elsewhere install the packages named below by hand and set
# SCANLINE_SKIP_SETUP=1.
set -euo pipefail

packages=(
  g++ cmake ninja-build pkg-config  # to build, and to test the pkg-config file
  libopencv-dev                     # OpenCV with its CMake package, which libopencv-core-dev lacks
  libeigen3-dev                     # only inside the library
  libgtest-dev libbenchmark-dev     # tests and benchmarks
  libcli11-dev libtomlplusplus-dev nlohmann-json3-dev libcairo2-dev  # the program scanline
  pybind11-dev python3-dev python3-numpy                             # the Python package
)
test_packages=(
  abigail-tools       # abi.sh
  dpkg-dev            # the test of the Debian packages
  clang               # the second compiler
  python3-jsonschema  # the test of the JSON output
  # The tests and examples of the Python package, and its wheel.
  python3-pytest python3-hypothesis python3-matplotlib python3-dask python3-distributed mypy
  python3-pil python3-tifffile python3-meshio python3-pandas
  python3-pip python3-setuptools python3-venv python3-wheel
)
dev_packages=(
  clang-format-14 clang-tidy-14 doxygen git shellcheck  # lint.sh
  gcovr valgrind python3                                # coverage.sh, cost.py, mutate.py, bench.sh
)

fail() {
  echo "setup.sh: $*" >&2
  exit 1
}

case "$#:${1-}" in
  0:) ;;
  1:--test) packages+=("${test_packages[@]}") ;;
  1:--dev) packages+=("${test_packages[@]}" "${dev_packages[@]}") ;;
  *) fail "unknown argument '$*'; the options are --test and --dev" ;;
esac

if [[ ${SCANLINE_SKIP_SETUP-} == 1 ]]; then
  exit 0
fi
if ! command -v apt-get >/dev/null; then
  fail "no apt-get here: install the like of '${packages[*]}' by hand, then set SCANLINE_SKIP_SETUP=1"
fi

# Names and states of those that dpkg knows; it fails if there is one that it does not know.
# shellcheck disable=SC2016  # the format's variables are dpkg's
known=$(dpkg-query -W -f '${Package} ${db:Status-Status}\n' "${packages[@]}" 2>/dev/null || true)
missing=()
for package in "${packages[@]}"; do
  if ! grep -qxF "$package installed" <<<"$known"; then
    missing+=("$package")
  fi
done
if ((${#missing[@]} == 0)); then
  exit 0
fi

as_root=()
if ((EUID != 0)); then
  command -v sudo >/dev/null ||
    fail "these packages are missing: ${missing[*]}; install them as root, there is no sudo here"
  as_root=(sudo)
fi

apt_get() {
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get -qq -o DPkg::Lock::Timeout=300 "$@" >&2
}

echo "setup.sh: installing ${missing[*]}" >&2
# The package lists may be missing or out of date; only then are they fetched.
if ! apt_get install -y --no-install-recommends "${missing[@]}" 2>/dev/null; then
  apt_get update || fail "apt-get update failed; its message is above"
  apt_get install -y --no-install-recommends "${missing[@]}" ||
    fail "apt-get could not install: ${missing[*]}; its message is above"
fi
