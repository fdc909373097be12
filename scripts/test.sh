#!/usr/bin/env bash
# Builds and runs all tests, in Release and then under AddressSanitizer and UBSan: test.sh
#
# Release builds everything; there the example programs and the packages are tested, and the binary
# interface is compared with the stored one. The sanitizers' build has the library and its own tests.
# Stops at the first step that fails.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
scripts/setup.sh --test
jobs=$(getconf _NPROCESSORS_ONLN)
for preset in release asan; do
  cmake --preset "$preset"
  cmake --build --preset "$preset" --parallel "$jobs"
  ctest --preset "$preset" --parallel "$jobs"
done
scripts/abi.sh build/release/src/libscanline.so
