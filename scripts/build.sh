#!/usr/bin/env bash
# Configures and builds one preset, quietly unless it fails: scripts/build.sh release [more CMake options]
set -euo pipefail
cd "$(dirname "$0")/.."

preset=$1
shift
log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! { cmake --preset "$preset" "$@" && cmake --build --preset "$preset"; } >"$log" 2>&1; then
  cat "$log"
  exit 1
fi
