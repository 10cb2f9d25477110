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
for program in Vadelwatch watch_tests Vadelshard gdalplugins/ogr_VadeDGM.so \
  tests/{Vadelclip_recording,gdal_tests,shard_tests,unit_tests,processmessage_tests}; do
  options+=(-object "$program")
done
llvm-cov-14 show -format=html -output-dir=report -show-branches=count "${options[@]}"
llvm-cov-14 report "${options[@]}"

# check <folders> <lines> <functions> <branches>: the limits in percent for the sources of these folders.
check() {
  llvm-cov-14 export -summary-only "${options[@]}" | python3 -c '
import json, re, sys
files = [file["summary"] for file in json.load(sys.stdin)["data"][0]["files"] if re.search(f"/src/({sys.argv[1]})/", file["filename"])]
short = False
for what, limit in zip(("lines", "functions", "branches"), map(float, sys.argv[2:])):
    reached = 100.0 * sum(file[what]["covered"] for file in files) / sum(file[what]["count"] for file in files)
    print(f"{sys.argv[1]}: {reached:.2f} % of the {what} are reached, {limit} % are required")
    short = short or reached < limit
sys.exit(short)' "$@"
}
check 'app|boundary|clip|messages|process|processmessage|text|watch' 99.5 99.5 98
# Not every call of Vadelshard and of the driver that can fail has a test yet.
check shard 97 99 90
check gdal 95 95 90
