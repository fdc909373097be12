#!/usr/bin/env bash
# Builds the benchmarks in Release and runs them: bench.sh [options of Google Benchmark]
#
# For example: bench.sh --benchmark_filter=Corner
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
"$root/scripts/setup.sh"
(
  cd "$root"
  cmake --preset release
  cmake --build --preset release --parallel "$(getconf _NPROCESSORS_ONLN)" --target scanline_bench
) >&2
exec "$root/build/release/bench/scanline_bench" "$@"
