#!/usr/bin/env bash
# Compares the binary interface of a build with the stored one: abi.sh [--update] [library]
#
# The library is build/release/src/libscanline.so unless named. The stored interface is
# tests/abi/<soname>.abi: all records with their layouts and all functions with their types. A new
# function or record is no change; whatever else differs fails, unless SCANLINE_SOVERSION was raised.
# --update stores the interface of the build. Needs GCC and abigail-tools, and x86-64.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
include=$root/include/scanline
functions=$root/tests/exports/exported_functions.txt

fail() {
  echo "abi.sh: $*" >&2
  exit 1
}

update=false
if [[ ${1-} == --update ]]; then
  update=true
  shift
fi
(($# <= 1)) || fail "usage: abi.sh [--update] [library]"
library=${1-$root/build/release/src/libscanline.so}
[[ -f $library ]] || fail "no library $library: build it first, or name another"
if [[ $(uname -m) != x86_64 ]]; then
  echo "abi.sh: the stored interface is that of x86-64; nothing is compared here" >&2
  exit 0
fi
soname=$(readelf -d "$library" | sed -nE 's/.*\(SONAME\).*\[(.*)\]/\1/p')
stored=$root/tests/abi/$soname.abi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# A library that names every record and every function, so that all of them are in its debug
# information. The headers' text is in its source, since the compiler describes the records of the
# main source alone: those of OpenCV and of the standard library stay names.
{
  for header in export scan_records feature_records; do
    cat "$include/$header.h"
  done
  find "$include" -name '*.h' | sort | grep -vE '/(export|scan_records|feature_records)\.h$' |
    xargs cat
} | sed '/^#include <scanline\//d; /^#pragma once/d' >"$work/interface.cpp"
{
  sed -nE 's/^struct ([A-Za-z0-9_]+) \{$/extern "C" void record_\1(const \1\&) {}/p' \
    "$work/interface.cpp"
  echo 'extern "C" {'
  sed -E 's/\(.*//; s/.*/extern decltype(\&&) const function_&;\n&/' "$functions" |
    sed -E 's/^[A-Za-z0-9_]+$/decltype(\&&) const function_& = \&&;/'
  echo '}'
} >"$work/names.txt"
cat "$work/names.txt" >>"$work/interface.cpp"
read -ra opencv <<<"$(pkg-config --cflags opencv4)"
"${CXX:-g++}" -std=c++17 -g -fPIC -shared -femit-struct-debug-baseonly "${opencv[@]}" \
  "$work/interface.cpp" "$library" -Wl,-soname,"$soname" -Wl,-z,defs -o "$work/interface.so"
abidw --no-corpus-path --no-comp-dir-path --no-show-locs --no-elf-needed --no-parameter-names \
  --no-write-default-sizes --exported-interfaces-only "$work/interface.so" |
  sed -E "s|path='[^']*'|path='interface.cpp'|" >"$work/interface.abi"

if $update; then
  cp "$work/interface.abi" "$stored"
  echo "abi.sh: stored the interface of $soname in ${stored#"$root"/}"
  exit 0
fi
[[ -f $stored ]] ||
  fail "no interface of $soname is stored; if SCANLINE_SOVERSION was raised, run abi.sh --update"
abidiff --no-added-syms "$stored" "$work/interface.abi" ||
  fail "the interface of $soname changed: raise SCANLINE_SOVERSION, then run abi.sh --update"
echo "abi.sh: the interface of $soname is as stored"
