#!/usr/bin/env bash
# Builds an example program and runs it: demo.sh [program] [options of the program]
#
# The program is a folder of examples/ that holds a main.cpp, trace_features unless named. The
# options are passed on as they are; --help lists them.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
program=trace_features
if [[ ${1-} =~ ^[a-z_]+$ && -f $root/examples/$1/main.cpp ]]; then
  program=$1
  shift
fi
"$root/scripts/setup.sh"
(
  cd "$root"
  cmake --preset release
  cmake --build --preset release --parallel "$(getconf _NPROCESSORS_ONLN)" --target "$program"
) >&2
exec "$root/build/release/examples/$program/$program" "$@"
