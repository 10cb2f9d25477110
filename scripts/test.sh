#!/usr/bin/env bash
# Everything that has to hold, from a bare Debian 12 machine: set-up, the suite as an optimised build and with address
# and undefined-behaviour sanitizers, what it reaches, the fuzzers for a short time, formatting, static analysis, the
# Debian package. Ends with status 0 if all of it holds.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/no-arguments.sh

step() { printf '\n== %s (after %d:%02d)\n' "$*" $((SECONDS / 60)) $((SECONDS % 60)); }

step "Packages"
scripts/setup.sh test coverage fuzz package

step "Formatting"
find src tests benchmarks fuzz \( -name '*.[ch]pp' -o -name '*.h' \) -exec clang-format --dry-run --Werror {} +

step "Build: optimised, as in the package"
# What is tested is what will be packed. The benchmarks are built with it, so that they cannot rot; they are not run here.
unset CPPFLAGS CFLAGS CXXFLAGS LDFLAGS
scripts/build.sh package -DVADELCLIP_WERROR=ON -DVADELCLIP_BENCHMARKS=ON -DVADELCLIP_TESTS=ON \
  -DVADELCLIP_UNITY_TESTS=ON -DCMAKE_UNITY_BUILD_BATCH_SIZE=16

# Many tests wait for something: clang-tidy takes what they and all that follows leave of the processors. As a job it has a
# process group, so that all of it ends with this script.
set -m
nice -n 19 scripts/clang-tidy.sh >build/clang-tidy.log 2>&1 &
tidy=$!
set +m
trap 'kill -- "-$tidy" 2>/dev/null || true' EXIT

step "Tests: optimised"
ctest --preset package --progress

step "valgrind on an example"
scripts/valgrind.sh build/package

step "Build: with sanitizers, by another compiler"
scripts/build.sh asan -DVADELCLIP_WERROR=ON

step "Tests: with sanitizers"
ctest --preset asan --progress

step "Coverage"
scripts/coverage.sh

step "Fuzzing, 20 seconds each"
scripts/fuzz.sh 20

step "cppcheck"
cppcheck --enable=warning,style,performance,portability --std=c++20 -I src -I src/processmessage \
  --suppressions-list=.cppcheck-suppressions --inline-suppr --error-exitcode=1 --quiet -j"$(nproc)" src

step "Package"
tested=$(sha256sum build/package/Vadelclip build/package/Vadelwatch)
VADELCLIP_WERROR=ON scripts/package.sh
sha256sum --check --quiet <<<"$tested" || { echo "What is packed is not what was tested." >&2; exit 1; }
skipped=
if [ "$(id -u)" -eq 0 ]; then
  scripts/test-package.sh
else
  skipped=" Skipped, as it takes root: the package was built and not installed."
fi

step "clang-tidy, begun beside the tests"
wait "$tidy" || { cat build/clang-tidy.log; exit 1; }
trap - EXIT

step "All checks passed.$skipped"
