#!/usr/bin/env bash
# Builds the program scanline, makes a scan with it and shows what it finds there:
#   demo.sh [trace | gaps | split | arcs | calibrate] [FOLDER]
#
# Pictures, the scan and the results as JSON go to FOLDER, build/demo/<command> unless given.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
command=${1-trace}
folder=${2-$root/build/demo/$command}

# What is made for each command, and a line of it that is worth a look.
case "$command" in
  trace) kind=bench line=(--line 430 --extractor corners) ;;
  gaps) kind=part line=(--line 200 --extractor gaps) ;;
  split) kind=belt line=() ;;
  arcs) kind=rods line=(--line 150 --extractor ring-arcs) ;;
  calibrate) kind=plate line=() ;;
  *)
    echo "demo.sh: unknown command '$command'; give trace, gaps, split, arcs or calibrate" >&2
    exit 2
    ;;
esac

"$root/scripts/setup.sh"
(
  cd "$root"
  cmake --preset release
  cmake --build --preset release --parallel "$(getconf _NPROCESSORS_ONLN)" --target scanline_program
) >&2

scanline=$root/build/release/program/scanline
scan=$folder/$kind.tiff
run() {
  echo "\$ scanline $*" >&2
  "$scanline" "$@" --overwrite
  echo >&2
}

mkdir -p "$folder"
run make "$kind" --output "$scan" --json "$folder/truth.json"
run "$command" "$scan" --picture "$folder/$command.png" --json "$folder/$command.json"
if ((${#line[@]} > 0)); then
  run line "$scan" "${line[@]}" --picture "$folder/line.png"
fi
echo "The pictures are in $folder:" "$(cd "$folder" && ls ./*.png)" >&2
