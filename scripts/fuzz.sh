#!/usr/bin/env bash
# Builds the fuzzers and runs them, two at a time on two processors: scripts/fuzz.sh [seconds each, 20] [name...]
# A name is that of the source: scripts/fuzz.sh 600 boundary_index
# They are built as build/asan/fuzz/<name>_fuzz. The corpus grows in build/fuzz/corpus, findings are kept in
# build/fuzz/findings. Ends with status 1 on any finding, and if a fuzzer has not tried more than what it starts from.
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=${1:-20}
names=("${@:2}")
if ! [[ $seconds =~ ^[1-9][0-9]*$ ]]; then
  echo "Usage: scripts/fuzz.sh [seconds each, 20] [name...]" >&2
  exit 2
fi
if [ ${#names[@]} -eq 0 ]; then
  for source in fuzz/*_fuzz.cpp; do
    name=${source#fuzz/}
    names+=("${name%_fuzz.cpp}")
  done
fi
for name in "${names[@]}"; do
  if ! [ -f "fuzz/${name}_fuzz.cpp" ]; then
    echo "There is no fuzz/${name}_fuzz.cpp" >&2
    exit 1
  fi
done

scripts/setup.sh fuzz
scripts/build.sh asan --target fuzzers -DVADELCLIP_WERROR=ON

mkdir -p build/fuzz/findings build/fuzz/logs
# The fuzzers write small files at every execution: into memory where there is such a place. A fuzzer that ends at a
# finding leaves its own behind.
place=/dev/shm
[ -d $place ] && [ -w $place ] || place=${TMPDIR:-/tmp}
TMPDIR=$(mktemp -d "$place/vadelclip-fuzz-XXXXXX")
export TMPDIR
trap 'rm -rf "$TMPDIR"' EXIT

run() {
  local name=$1 options=()
  [ -f "fuzz/dictionaries/$name.dict" ] && options+=("-dict=fuzz/dictionaries/$name.dict")
  mkdir -p "build/fuzz/corpus/$name"
  find "build/fuzz/corpus/$name" "fuzz/corpus/$name" -type f | wc -l >"build/fuzz/logs/$name.seeds"
  "build/asan/fuzz/${name}_fuzz" "${options[@]}" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2560 \
    -print_final_stats=1 -artifact_prefix="build/fuzz/findings/$name-" "build/fuzz/corpus/$name" "fuzz/corpus/$name" \
    >"build/fuzz/logs/$name.log" 2>&1
}

declare -A statuses=() names_of=()
await_one() {
  local ended status=0
  wait -n -p ended || status=$?
  statuses[${names_of[$ended]}]=$status
}
running=0
for name in "${names[@]}"; do
  if [ "$running" -ge "$(nproc)" ]; then
    await_one
    running=$((running - 1))
  fi
  run "$name" &
  names_of[$!]=$name
  running=$((running + 1))
done
for (( ; running > 0; running--)); do
  await_one
done

# The value behind a word in the last line of a log that has both.
last() { grep -aoE "$1 +[0-9]+" "build/fuzz/logs/$2.log" | tail -1 | grep -oE '[0-9]+$' || echo -; }

findings=0
printf '%-22s %12s %8s %6s %7s %7s\n' fuzzer executions exec/s cov ft corpus
for name in "${names[@]}"; do
  printf '%-22s %12s %8s %6s %7s %7s\n' "$name" "$(last stat::number_of_executed_units: "$name")" \
    "$(last stat::average_exec_per_sec: "$name")" "$(last cov: "$name")" "$(last ft: "$name")" "$(last corp: "$name")"
done
for name in "${names[@]}"; do
  [ "${statuses[$name]}" -eq 0 ] && continue
  findings=$((findings + 1))
  printf '\n== Finding: %s, the whole log is build/fuzz/logs/%s.log\n' "$name" "$name"
  grep -aE -A12 'FINDING|ERROR: |runtime error|terminate called|what\(\)' "build/fuzz/logs/$name.log" | head -40 ||
    tail -20 "build/fuzz/logs/$name.log"
  input=$(grep -aoE 'build/fuzz/findings/[^ ]+' "build/fuzz/logs/$name.log" | tail -1 || true)
  printf 'Replay it:  build/asan/fuzz/%s_fuzz %s\n' "$name" "$input"
done

# A fuzzer that has only read its seeds, or nothing at all, has found nothing because it has not looked. It begins with an
# empty input, which is no seed.
idle=0
for name in "${names[@]}"; do
  seeds=$(<"build/fuzz/logs/$name.seeds")
  executions=$(last stat::number_of_executed_units: "$name")
  if [ "${statuses[$name]}" -eq 0 ] && ! { [[ $executions =~ ^[0-9]+$ ]] && [ "$executions" -gt $((seeds + 1)) ]; }; then
    idle=$((idle + 1))
    printf '\n== Nothing tried: %s, %s executions with %s seeds; it may need more seconds. The log is build/fuzz/logs/%s.log\n' \
      "$name" "$executions" "$seeds" "$name"
  fi
done
if [ "$findings" -eq 0 ] && [ "$idle" -eq 0 ]; then
  printf '\nNo finding; every fuzzer has tried more inputs than its seeds.\n'
else
  exit 1
fi
