#!/usr/bin/env bash
# Checks what the compiler does not: formatting, shell scripts, clang-tidy, documentation: lint.sh
#
# `lint.sh --fix` formats the sources in place first. Runs every check, then fails if one failed.
# Needs bash 4 or later.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
case "$#:${1-}" in
  0:) fix=false ;;
  1:--fix) fix=true ;;
  *)
    echo "lint.sh: unknown argument '$*'; the only option is --fix" >&2
    exit 1
    ;;
esac
scripts/setup.sh --dev

failed=()
check() { # check NAME COMMAND...
  local name=$1
  shift
  echo "== $name"
  "$@" || failed+=("$name")
}

format=clang-format-14
mapfile -t sources < <(git ls-files '*.h' '*.cpp')
mapfile -t scripts < <(git ls-files 'scripts/*.sh' .ci/run)
if $fix; then
  "$format" -i "${sources[@]}"
fi
check "clang-format" "$format" --dry-run -Werror "${sources[@]}"
check "shellcheck" shellcheck "${scripts[@]}"

# Configuring comes first: clang-tidy reads its compile commands. Generated sources hold nothing but
# an include, and headers are checked with the sources that include them.
mkdir -p build
cmake --preset release >build/lint.log
check "clang-tidy" run-clang-tidy-14 -quiet -p build/release "^$PWD/(src|tests|bench|examples)/"
check "documentation" cmake --build --preset release --target scanline_docs

if ((${#failed[@]} > 0)); then
  echo "lint.sh: failed: ${failed[*]}" >&2
  exit 1
fi
echo "lint.sh: all checks passed"
