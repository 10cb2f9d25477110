#!/usr/bin/env bash
# Runs clang-tidy over src/ with the configuration in .clang-tidy; every warning is an error. Nothing has to be built before.
# It takes its time for the headers, so the sources of a library are put into one file, which reads them once. They are
# copied and not included, since some checks look at the main file alone.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/no-arguments.sh

log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! cmake --preset tool -B build/clang-tidy -DCMAKE_UNITY_BUILD=ON -DCMAKE_UNITY_BUILD_BATCH_SIZE=0 >"$log" 2>&1; then
  cat "$log"
  exit 1
fi
find build/clang-tidy -name 'unity_*.cxx' -print0 | while IFS= read -r -d '' unity; do
  awk -F'"' '/^#include/ { print "// From " $2; while ((getline line < $2) > 0) print line }' "$unity" >"$unity.whole"
  mv "$unity.whole" "$unity"
done

# Sources of one library include the same headers.
if ! run-clang-tidy -p build/clang-tidy -quiet -j"$(nproc)" -checks=-readability-duplicate-include >"$log" 2>&1; then
  grep -vE '^(clang-tidy|[0-9]+ warnings|Use -)' "$log"
  echo "The source stands in the file that is named, behind the last \"// From\" in front of the line."
  exit 1
fi
twice=$(find src -name '*.[ch]pp' -exec awk '/^#include/ && seen[FILENAME $0]++ { print FILENAME ": twice: " $0 }' {} +)
if [ -n "$twice" ]; then
  echo "$twice"
  exit 1
fi
