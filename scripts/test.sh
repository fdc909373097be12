#!/usr/bin/env bash
# Builds and runs all tests: test.sh
#
# All functions on eight threads under ThreadSanitizer; everything under AddressSanitizer and UBSan;
# everything in Release, with the binary interface and the results of a second compiler. Stops at
# the first build that fails to build or to pass; the last lines are ctest's.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
scripts/setup.sh --test
jobs=$(getconf _NPROCESSORS_ONLN)

build() { # build PRESET TARGET [OPTION...]
  cmake --preset "$1" "${@:3}"
  cmake --build --preset "$1" --parallel "$jobs" --target "$2"
}

build tsan scanline_call_tests
ctest --preset tsan -R calls.Threads
build asan all
ctest --preset asan --parallel "$jobs"
build release all -D SCANLINE_BUILD_PYTHON=ON
scripts/abi.sh
ctest --preset release --parallel "$jobs"
