#!/usr/bin/env bash
# Builds the benchmarks in Release and runs them: bench.sh [--against REVISION] [options of Google Benchmark]
#
# For example: bench.sh --benchmark_filter=Corner
#
# With --against, builds the library of that revision as well, runs today's benchmarks with both
# libraries in turn, and prints a table of the times before and after, their ratio and its spread.
# BENCH_ROUNDS is the number of runs with each, 7 by default.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
bench=$root/build/release/bench/scanline_bench
jobs=$(getconf _NPROCESSORS_ONLN)

against=
if [[ ${1-} == --against ]]; then
  if (($# < 2)); then
    echo "bench.sh: --against needs a revision, such as HEAD~1 or a tag" >&2
    exit 1
  fi
  against=$2
  shift 2
  commit=$(git -C "$root" rev-parse --verify --quiet --short "$against^{commit}") || {
    echo "bench.sh: '$against' is no revision of this repository" >&2
    exit 1
  }
  "$root/scripts/setup.sh" --dev
else
  "$root/scripts/setup.sh"
fi

# The library of a revision, alone, in Release.
build_revision() {
  local source=$1/source build=$1/build
  rm -rf "$source"
  mkdir -p "$source"
  git -C "$root" archive "$commit" | tar -x -C "$source"
  cmake -S "$source" -B "$build" -G Ninja -D CMAKE_BUILD_TYPE=Release -D SCANLINE_BUILD_TESTS=OFF \
    -D SCANLINE_BUILD_BENCHMARKS=OFF -D SCANLINE_BUILD_EXAMPLES=OFF -D SCANLINE_BUILD_PROGRAM=OFF \
    -D SCANLINE_BUILD_PYTHON=OFF -D SCANLINE_BUILD_DOCS=OFF
  cmake --build "$build" --parallel "$jobs"
}

{
  cd "$root"
  cmake --preset release
  cmake --build --preset release --parallel "$jobs" --target scanline_bench
  if [[ $against ]]; then
    build_revision "build/against/$commit"
  fi
} >&2

if [[ $against ]]; then
  exec python3 "$root/scripts/bench_pairs.py" --rounds "${BENCH_ROUNDS:-7}" \
    --before "$root/build/against/$commit/build/src" --after "$root/build/release/src" "$bench" "$@"
fi
exec "$bench" "$@"
