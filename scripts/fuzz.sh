#!/usr/bin/env bash
# Builds the fuzzers and runs one on each processor: scripts/fuzz.sh [seconds each, 20] [name...]
# A name is that of the source: scripts/fuzz.sh 600 boundary_index
# The corpus grows in build/fuzz/corpus, inputs that fail are kept in build/fuzz/findings. Ends with status 1 on any finding,
# and if a fuzzer has tried nothing but its seeds.
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=${1:-20}
names=("${@:2}")
if ! [[ $seconds =~ ^[1-9][0-9]*$ ]]; then
  echo "Usage: scripts/fuzz.sh [seconds each, 20] [name...]" >&2
  exit 2
fi
if [ ${#names[@]} -eq 0 ]; then
  mapfile -t names < <(basename -s _fuzz.cpp fuzz/*_fuzz.cpp)
fi

scripts/setup.sh test
cmake --preset asan >/dev/null
cmake --build --preset asan --target fuzzers -- --quiet

# The fuzzers write small files in every execution, so their directory is in memory if possible. A fuzzer that ends at a
# finding does not remove its files.
memory=/dev/shm
[ -w $memory ] || memory=${TMPDIR:-/tmp}
TMPDIR=$(mktemp -d "$memory/vadelclip-fuzz-XXXXXX")
trap 'rm -rf "$TMPDIR"' EXIT
export TMPDIR seconds

run() {
  local name=$1 corpus=build/fuzz/corpus/$1 log=build/fuzz/$1.log options=() seeds tried
  [ -f "fuzz/dictionaries/$name.dict" ] && options+=("-dict=fuzz/dictionaries/$name.dict")
  mkdir -p "$corpus" build/fuzz/findings
  seeds=$(find -H "$corpus" "fuzz/corpus/$name" -type f | wc -l)
  if ! "build/asan/fuzz/${name}_fuzz" "${options[@]}" -max_total_time="$seconds" -timeout=60 -rss_limit_mb=2560 \
    -print_final_stats=1 -artifact_prefix="build/fuzz/findings/$name-" "$corpus" "fuzz/corpus/$name" >"$log" 2>&1; then
    tail -n 60 "$log"
    echo "$name: a finding. To run the input again: build/asan/fuzz/${name}_fuzz <the file that \"Test unit written to\" names>"
    return 1
  fi
  tried=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
  echo "$name: $tried inputs, $seeds of them seeds"
  # libFuzzer adds an empty input to the seeds.
  if ! [ "$tried" -gt $((seeds + 1)) ]; then
    echo "$name: only the seeds were tried. Give it more seconds."
    return 1
  fi
}
export -f run

printf '%s\n' "${names[@]}" | xargs -I{} -P "$(nproc)" bash -c 'run {}'
