#!/usr/bin/env bash
# Measures the whole tool against other tools, against programs for the same task with other libraries, and against a
# program that only reads and writes the bytes. Prints a table and keeps it in benchmarks/runs/. Installs what is missing.
#
#     scripts/bench.sh [pairs [pattern of the cases]]
set -euo pipefail
cd "$(dirname "$0")/.."
if [ $# -gt 2 ] || ! [[ ${1:-1} =~ ^[1-9][0-9]*$ ]]; then
  echo "Usage: scripts/bench.sh [pairs [pattern of the cases]]" >&2
  exit 2
fi

scripts/setup.sh bench
cmake --preset bench >/dev/null
cmake --build --preset bench -- --quiet
exec python3 benchmarks/whole_process/run.py build/bench build/bench/data benchmarks/runs "$@"
