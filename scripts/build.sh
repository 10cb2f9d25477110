#!/usr/bin/env bash
# Configures and builds one preset, quietly unless it fails: scripts/build.sh release [more CMake options]
set -euo pipefail
cd "$(dirname "$0")/.."

if [[ ${1:--} == -* ]]; then
  echo "Usage: scripts/build.sh <preset> [more CMake options]" >&2
  exit 2
fi
preset=$1
shift
log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! { cmake --preset "$preset" "$@" && cmake --build --preset "$preset"; } >"$log" 2>&1; then
  cat "$log"
  exit 1
fi
