#!/usr/bin/env bash
# Builds the example program and runs it: demo.sh [options of trace_features]
#
# The options are passed on as they are; --help lists them.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
"$root/scripts/setup.sh"
(
  cd "$root"
  cmake --preset release
  cmake --build --preset release --parallel "$(nproc)" --target trace_features
) >&2
exec "$root/build/release/examples/trace_features/trace_features" "$@"
