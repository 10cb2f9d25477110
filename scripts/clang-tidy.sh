#!/usr/bin/env bash
# Runs clang-tidy over src/ with the configuration in .clang-tidy; every warning is an error. Needs the release build.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/no-arguments.sh

log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! run-clang-tidy -p build/release -quiet -j"$(nproc)" "$PWD/src/.*" >"$log" 2>&1; then
  grep -vE '^(clang-tidy|[0-9]+ warnings|Use -)' "$log"
  exit 1
fi
