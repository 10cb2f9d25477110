#!/usr/bin/env bash
# Runs the test suite in a build that counts which lines and branches of src/ it reaches, and prints a table of the sources.
# Ends with status 1 if less is reached than the limits below. build/coverage/report/index.html shows each line.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh test
cmake --preset coverage >/dev/null
cmake --build --preset coverage -- --quiet
rm -rf build/coverage/{profiles,report}
# Users without rights cannot write to the files of counts. The other test builds the tool anew, without counting.
ctest --preset coverage --progress -E 'unprivileged_user|external_processmessage'
cd build/coverage
llvm-profdata-14 merge profiles/*.profraw -o profile

options=(-instr-profile=profile -ignore-filename-regex=/tests/ Vadelclip)
for program in Vadelwatch watch_tests Vadelshard tests/{Vadelclip_recording,shard_tests,unit_tests,processmessage_tests}; do
  options+=(-object "$program")
done
llvm-cov-14 show -format=html -output-dir=report -show-branches=count "${options[@]}"
llvm-cov-14 report "${options[@]}"

# check <lines> <functions> <branches> <sources left out>: the limits in percent for the other sources.
check() {
  llvm-cov-14 export -summary-only "${options[@]}" -ignore-filename-regex="$4" | python3 -c '
import json, sys
totals = json.load(sys.stdin)["data"][0]["totals"]
short = False
for what, limit in zip(("lines", "functions", "branches"), map(float, sys.argv[1:])):
    reached = totals[what]["percent"]
    print(f"{reached:.2f} % of the {what} are reached, {limit} % are required")
    short = short or reached < limit
sys.exit(short)' "$1" "$2" "$3"
}
check 99.5 99.5 98 /src/shard/
# Not every call of Vadelshard that can fail has a test yet.
check 97 98 88 '/src/(app|boundary|clip|messages|process|processmessage|text|watch)/'
