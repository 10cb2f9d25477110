#!/usr/bin/env bash
# Checks what scripts/test.sh does not: formatting, shell scripts, static analysis, valgrind, coverage, the fuzzers for 20
# seconds each, and the Debian package. Installs what is missing. Needs root or sudo for the test of the package.
set -euo pipefail
cd "$(dirname "$0")/.."

step() { printf '\n== %s (after %d:%02d)\n' "$*" $((SECONDS / 60)) $((SECONDS % 60)); }

step "Packages"
scripts/setup.sh check

step "Formatting"
find src tests benchmarks fuzz \( -name '*.[ch]pp' -o -name '*.h' \) -exec clang-format --dry-run --Werror {} +

step "shellcheck"
shellcheck -x scripts/*.sh .ci/run completions/*.bash packaging/piuparts/* src/shard/vadelclip-*

step "cppcheck"
cppcheck --enable=warning,style,performance,portability --std=c++20 -I src -I src/processmessage \
  --suppressions-list=.cppcheck-suppressions --inline-suppr --error-exitcode=1 --quiet -j"$(nproc)" src

step "Build: release, with the benchmarks"
unset CPPFLAGS CFLAGS CXXFLAGS LDFLAGS
cmake --preset release -DVADELCLIP_BENCHMARKS=ON >/dev/null
cmake --build --preset release -- --quiet

step "clang-tidy"
log=$(mktemp)
scratch=$(mktemp -d)
trap 'rm -rf "$log" "$scratch"' EXIT
run-clang-tidy -p build/release -quiet "^$PWD/src/" >"$log" 2>&1 || { grep -v '^clang-tidy' "$log"; exit 1; }

step "valgrind"
# A run over an example, in German and with messages: no invalid access, no leak, and the same bytes as without valgrind.
# Memory that Boost.Locale keeps until the end is reachable and no leak.
cp -r examples/merewether "$scratch"
tool=$PWD/build/release/Vadelclip
(
  cd "$scratch/merewether"
  "$tool" ./nodes plain buildings.xml
  valgrind --quiet --error-exitcode=99 --leak-check=full --errors-for-leak-kinds=definite,indirect,possible \
    "$tool" ./nodes checked buildings.xml -pipe -lang=de 3>messages.jsonl
  diff -r plain checked
  grep -q '"type":"finish".*abgeschlossen' messages.jsonl
)

step "Coverage"
scripts/coverage.sh

step "Fuzzing, 20 seconds each"
scripts/fuzz.sh 20

step "Debian package"
scripts/package.sh
scripts/test-package.sh

step "All checks passed"
