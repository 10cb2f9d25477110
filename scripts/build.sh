#!/usr/bin/env bash
# Configures and builds one preset, quietly unless it fails: scripts/build.sh release [more CMake options]
# All of it, or one target: scripts/build.sh asan --target fuzzers
set -euo pipefail
cd "$(dirname "$0")/.."

if [[ ${1:--} == -* ]]; then
  echo "Usage: scripts/build.sh <preset> [--target <name>] [more CMake options]" >&2
  exit 2
fi
preset=$1
shift
target=all
if [ "${1:-}" = --target ] && [ $# -ge 2 ]; then
  target=$2
  shift 2
fi
log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! { cmake --preset "$preset" "$@" && cmake --build --preset "$preset" --target "$target"; } >"$log" 2>&1; then
  cat "$log"
  exit 1
fi
