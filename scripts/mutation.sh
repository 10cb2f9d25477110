#!/usr/bin/env bash
# Tries mutants of the tool's own logic for so many minutes, at low priority, and prints what is known of all of them:
# scripts/mutation.sh [minutes, default 60] [more options of mutation/run.py]
# Outcomes are kept in build/mutation, so that each run goes on where the last one stopped. Ends with status 1 if a
# mutant survives that mutation/explained.json does not explain.
set -euo pipefail
cd "$(dirname "$0")/.."

minutes=${1:-60}
if ! [[ $minutes =~ ^[0-9]+$ ]]; then
  echo "Usage: scripts/mutation.sh [minutes, 60] [options of mutation/run.py]" >&2
  exit 2
fi
shift || true
scripts/setup.sh mutation
mkdir -p build/mutation
# Two runs at a time would put their mutants into the same copy of the tree.
exec 9>build/mutation/lock
flock -n 9 || { echo "another run is at work" >&2; exit 2; }
exec nice -n 10 /usr/bin/python3 mutation/run.py --minutes "$minutes" "$@"
