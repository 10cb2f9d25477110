#!/usr/bin/env bash
# Everything that has to hold, from a bare Debian 12 machine: set-up, the suite as an optimised build and with address
# and undefined-behaviour sanitizers, what it reaches, the fuzzers for a short time, formatting, static analysis, the
# Debian package. Ends with status 0 if all of it holds.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/no-arguments.sh

step() { printf '\n== %s (after %d:%02d)\n' "$*" $((SECONDS / 60)) $((SECONDS % 60)); }

step "Packages"
scripts/setup.sh test

step "Formatting"
git ls-files '*.cpp' '*.hpp' '*.h' | xargs clang-format --dry-run --Werror

step "Build: release"
# The benchmarks are built with it, so that they cannot rot; they are not run here.
scripts/build.sh release -DVADELCLIP_WERROR=ON -DVADELCLIP_BENCHMARKS=ON -DVADELCLIP_UNITY_TESTS=ON

# Many tests wait for something: clang-tidy takes what they leave of the processors. As a job it has a process group, so
# that all of it ends with this script.
set -m
nice -n 19 scripts/clang-tidy.sh &
tidy=$!
set +m
trap 'kill -- "-$tidy" 2>/dev/null || true' EXIT

step "Tests: release"
ctest --preset release --progress

step "Build: asan"
scripts/build.sh asan -DVADELCLIP_WERROR=ON

step "Tests: asan"
ctest --preset asan --progress

step "Coverage"
scripts/coverage.sh

step "valgrind on an example"
scripts/valgrind.sh

step "Fuzzing, 20 seconds each"
scripts/fuzz.sh 20

step "clang-tidy, begun beside the tests"
wait "$tidy"
trap - EXIT

step "cppcheck"
cppcheck --enable=warning,style,performance,portability --std=c++20 -I src -I src/processmessage \
  --suppressions-list=.cppcheck-suppressions --inline-suppr --error-exitcode=1 --quiet -j"$(nproc)" src

step "Package"
scripts/package.sh
skipped=
if [ "$(id -u)" -eq 0 ]; then
  scripts/test-package.sh
else
  skipped=" Skipped, as it takes root: the package was built and not installed."
fi

step "All checks passed.$skipped"
