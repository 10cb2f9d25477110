#!/usr/bin/env bash
# Runs the suite in a build that counts what is reached in src/. Prints lines, functions and branches per source and
# everything that is not reached; a page for each source is written to build/coverage/report. Branches that only an
# exception thrown by a library call takes, and that the compiler adds, are left out.
# Ends with status 1 if a line or a function is not reached, or fewer than 95 % of the branches.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh coverage
scripts/build.sh coverage
find build/coverage -name '*.gcda' -delete
# Left out is what disturbs the counting itself (processes killed, without memory or without rights while they write
# their counts) and what reaches nothing that other tests do not reach.
GCOV_ERROR_FILE=/dev/null ctest --preset coverage --progress \
  -E 'acceptance\.(killed_runs|faults_memory|unprivileged_user|full_disk|installation|manual_pages|external|hostile|large)'
mkdir -p build/coverage/report
cd build/coverage
gcovr --root ../.. --filter '../../src/' --exclude-throw-branches --exclude-unreachable-branches -j"$(nproc)" \
  --html-details report/index.html --json-summary report/summary.json --json report/details.json.
python3 ../../scripts/coverage_report.py report/summary.json report/details.json
