#!/usr/bin/env bash
# Measures the whole tool against what a user would pick instead, against what a programmer would write, and against
# the floor that no program can go below; prints a table and keeps it under benchmarks/runs/. Installs what is missing.
#
#     scripts/bench.sh [pairs [pattern of the cases]]
set -euo pipefail
cd "$(dirname "$0")/.."
if [ $# -gt 2 ] || ! [[ ${1:-1} =~ ^[1-9][0-9]*$ ]]; then
  echo "Usage: scripts/bench.sh [pairs [pattern of the cases]]" >&2
  exit 2
fi

scripts/setup.sh bench
scripts/build.sh bench
exec python3 benchmarks/whole_process/run.py build/bench build/bench/data benchmarks/runs "$@"
