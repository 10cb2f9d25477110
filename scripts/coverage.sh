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
llvm-cov-14 export -summary-only "${options[@]}" | python3 -c '
import json, sys
totals = json.load(sys.stdin)["data"][0]["totals"]
short = False
for what, limit in ("lines", 99), ("functions", 99.5), ("branches", 96):
    reached = totals[what]["percent"]
    if reached < limit:
        short = True
        print(f"{reached:.2f} % of the {what} are reached, {limit} % are required")
sys.exit(short)'
