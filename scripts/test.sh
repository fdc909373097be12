#!/usr/bin/env bash
# Builds and runs all tests, in Release and then under AddressSanitizer and UBSan: test.sh
#
# Stops at the first build that fails to build or to pass; the last lines are ctest's.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
scripts/setup.sh
jobs=$(getconf _NPROCESSORS_ONLN)
for preset in release asan; do
  cmake --preset "$preset"
  cmake --build --preset "$preset" --parallel "$jobs"
  ctest --preset "$preset" --parallel "$jobs"
done
