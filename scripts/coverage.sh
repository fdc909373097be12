#!/usr/bin/env bash
# Measures which branches of src/ the tests take, and lists those they do not: coverage.sh
#
# Builds the preset coverage. Branches that only an exception takes are not
# counted. The report of all lines is build/coverage/coverage.html.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
scripts/setup.sh --dev
(
  cmake --preset coverage
  cmake --build --preset coverage --parallel "$(getconf _NPROCESSORS_ONLN)"
  find build/coverage -name '*.gcda' -delete
  find build/coverage/tests -name 'scanline*_tests' -type f -perm -u+x \
    -exec {} --gtest_brief=1 \;
) >&2

report=(gcovr --root . --filter src/ --exclude-unreachable-branches)
"${report[@]}" build/coverage --json build/coverage/coverage.json
# Where a copy of a function never ran, gcov does not say which of its branches only an exception
# takes. So these branches go after all copies have been merged, not by --exclude-throw-branches.
python3 - build/coverage/coverage.json <<'END'
import json
import sys

with open(sys.argv[1], "r+") as file:
    report = json.load(file)
    for line in (line for source in report["files"] for line in source["lines"]):
        line["branches"] = [branch for branch in line["branches"] if not branch["throw"]]
    file.seek(0)
    file.truncate()
    json.dump(report, file)
END
report+=(--add-tracefile build/coverage/coverage.json)
"${report[@]}" --html-details build/coverage/coverage.html
"${report[@]}" --branches
echo
printf '%-14s%10s%10s%10s\n' room branches taken 'per cent'
"${report[@]}" --csv | awk -F, '
  NR == 1 { for (i = 1; i <= NF; ++i) column[$i] = i; next }
  {
    split($column["filename"], path, "/")
    for (room = path[2]; room; room = room == "all" ? "" : "all") {
      total[room] += $column["branch_total"]
      taken[room] += $column["branch_covered"]
    }
  }
  END {
    for (room in total)
      printf "%-14s%10d%10d%10.1f\n", room, total[room], taken[room],
             total[room] ? 100 * taken[room] / total[room] : 100
  }' | sort
