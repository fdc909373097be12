#!/usr/bin/env bash
# Draws the pictures of docs/features.md anew: gallery.sh [FOLDER]
#
# Makes a profile for each extractor of the program and searches one of its lines. The pictures go
# to FOLDER, docs/images/gallery unless given, under the names of the library's functions. Wants the
# program to be built, in build/release unless SCANLINE names it.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
scanline=${SCANLINE-$root/build/release/program/scanline}
folder=${1-$root/docs/images/gallery}
if [[ ! -x $scanline ]]; then
  echo "gallery.sh: there is no program $scanline; build the target scanline_program" >&2
  exit 2
fi
scans=$(mktemp -d)
trap 'rm -r "$scans"' EXIT
mkdir -p "$folder"

plane=none
draw() { # draw FUNCTION SHAPE EXTRACTOR [OPTION...]
  "$scanline" make profile --shape "$2" --output "$scans/$2.npy" --quiet >/dev/null
  echo "== $1"
  "$scanline" line "$scans/$2.npy" --line 30 --plane "$plane" --extractor "${@:3}" \
    --picture "$folder/$1.png" --overwrite --quiet
}

corner=(--corner-scale 3 --corner-angle 30)
draw qo_getLineCornerFeature box corners "${corner[@]}" --corner-th1 45 --corner-th2 30 \
  --corner-gap-y 5 --corner-gap-z 30
draw qo_maskData_getLineCornerFeature parts masked-corners "${corner[@]}" --corner-th1 45 \
  --corner-th2 30 --mask-y-min 60 --mask-y-max 110
draw ju_getLineCornerFeature_PSM table corners-below "${corner[@]}" --corner-th1 45 \
  --corner-th2 30 --corner-gap-z 30 --limit-z 140
draw ju_getLineCorerFeature channel run-corners "${corner[@]}" --corner-th1 30 --corner-th2 60 \
  --corner-gap-z 30
draw qo_getLineCornerFeature_BQ pockets corners-at "${corner[@]}" --corner-th1 30 \
  --corner-gap-y 5 --corner-gap-z 30 --limit-z 118
plane=farthest draw qo_getLineContourCornerFeature_groundMask_BQ pedestal contour-corners \
  "${corner[@]}" --corner-th1 30 --corner-gap-y 5 --corner-gap-z 30 --ground-distance 8
draw qo_getLineGapFeature panels gaps --corner-scale 2 --corner-angle 40 --corner-gap-z 30 \
  --width-min 2 --width-max 12
draw qo_getLineJumpFeature_cornerMethod soft-steps corner-jumps "${corner[@]}" --corner-th1 25 \
  --corner-th2 55 --corner-gap-y 6 --corner-gap-z 8
draw qo_getLineDownJumps stairs down-jumps --jump-z 8
draw qo_getLineLocalPeaks hills peaks --peak-scale 14
draw qo_getFlatLineLocalPeaks_vector dents dents --dent-window 1 --jump-z 0.8 --width-max 8
draw qo_getLineLVFeature bank shapes --slope-z 5 --jump-z 8 --slope-gap-y 3 --v-apex-z 4 \
  --width-max 10
draw qo_getLineRigthAngleFeature rail right-angles --arm-flat 8 --arm-steep 6 --arm-deviation 0.8
draw ju_getRingArcFeature beads ring-arcs --corner-scale 2 --corner-angle 60 --corner-gap-z 20 \
  --width-min 12 --width-max 30
draw qo_getLineUpperSemiCircleFeature tubes tubes --tube-unit 6 --tube-hole 11 --slope-gap-y 2
draw ju_getLineGloveArcs bowls glove-arcs --corner-scale 3 --glove-arm 14 --glove-angle 60
draw ju_getLineRaisedFeature ribs raised --jump-z 5 --raised-slope 3 --width-min 5 --width-max 20
