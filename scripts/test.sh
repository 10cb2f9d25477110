#!/usr/bin/env bash
# Installs what is missing and runs the test suite twice: optimised as in the Debian package, built by GCC, and with the
# address and undefined-behaviour sanitizers, built by clang.
set -euo pipefail
cd "$(dirname "$0")/.."

step() { printf '\n== %s (after %d:%02d)\n' "$*" $((SECONDS / 60)) $((SECONDS % 60)); }

step "Packages"
scripts/setup.sh test

unset CPPFLAGS CFLAGS CXXFLAGS LDFLAGS
for preset in release asan; do
  step "Build: $preset"
  cmake --preset "$preset" >/dev/null
  cmake --build --preset "$preset" -- --quiet
  step "Tests: $preset"
  ctest --preset "$preset" --progress
done
