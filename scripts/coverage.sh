#!/usr/bin/env bash
# Runs the suite in a build that counts what is reached in src/: scripts/coverage.sh [--strict]
# Prints what is not reached and has no reason in scripts/unreached.json, then lines, functions and branches.
# docs/reliability.md says what counts as a branch.
# Ends with status 1 if a source is not counted, fewer than 99.5 % of the lines or functions are reached, or fewer than 95 %
# of the branches are taken; with --strict also for each of them that has no reason. Some take a signal that meets a call.
set -euo pipefail
cd "$(dirname "$0")/.."

if [ $# -gt 1 ] || [ "${1:---strict}" != --strict ]; then
  echo "Usage: scripts/coverage.sh [--strict]" >&2
  exit 2
fi

scripts/setup.sh coverage
scripts/build.sh coverage
find build/coverage -name '*.gcda' -delete
# Left out is what disturbs the counting itself (processes killed, without memory or without rights while they write
# their counts), and what takes long and reaches nothing that other tests do not reach, or what unreached.json says.
disturbing='killed_runs|faults_memory|unprivileged_user|full_disk'
reaching_nothing_more='installation|manual_pages|external|hostile|large|faults_reading|boundary_numbers|watch_picture'
GCOV_ERROR_FILE=/dev/null ctest --preset coverage --progress \
  -E "RandomTexts|acceptance\.($disturbing|$reaching_nothing_more)"
mkdir -p build/coverage/report
# The interpreter of the system, which is the one that gcovr runs under, starts fastest.
gcovr --root . --filter src/ --object-directory "$PWD/build/coverage" --exclude-unreachable-branches -j"$(nproc)" \
  --gcov-executable "/usr/bin/python3 $PWD/scripts/gcov_without_cleanup.py" \
  --json build/coverage/report/details.json build/coverage/src build/coverage/tests
python3 scripts/coverage_report.py build/coverage/report/details.json "$@"
