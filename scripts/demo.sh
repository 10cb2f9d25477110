#!/usr/bin/env bash
# Installs what is missing, builds the tool and clips real elevation data to real outlines: the terrain of a suburb to its
# buildings and to its road, and the towns of the world to the coastlines of large islands. Compares every count with
# examples/README.md, whose counts are those of two independent geometry libraries.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
echo "Building ..."
cmake --preset tool >/dev/null
cmake --build --preset tool -- --quiet

tool=$PWD/build/tool/Vadelclip
place=$PWD/build/demo
rm -rf "$place"
mkdir -p "$place"
cp -r examples/merewether examples/coast "$place"

mismatches=0

# Prints the number in a row and in the column "kept: <boundary>" of the tables in examples/README.md.
expected_count() {
  awk -F' *[|] *' -v row="$1" -v column="kept: $2" '
    { for (i = 2; i < NF; i++) if ($i == column) at = i }
    at && $2 == row { print $at; exit }
    $0 == "" { at = 0 }' examples/README.md
}

compare() {
  local name=$1 kept=$2 expected=$3 verdict=ok
  if [ "$kept" != "$expected" ]; then
    verdict="MISMATCH, expected $expected"
    mismatches=$((mismatches + 1))
  fi
  printf '  %-24s %7d kept   %s\n' "$name" "$kept" "$verdict"
}

lines_without_header() {
  if [ -e "$1" ]; then echo $(($(wc -l <"$1") - 1)); else echo 0; fi
}

clip() {
  local set=$1 area=$2
  printf '\n$ Vadelclip %s/nodes %s %s/%s.xml\n' "$set" "$area" "$set" "$area"
  (cd "$place" && "$tool" "$set/nodes" "$area" "$set/$area.xml")
  local file
  for file in "$place/$set"/nodes/*; do
    file=$(basename "$file")
    compare "$file" "$(lines_without_header "$place/$set/$area/$file")" "$(expected_count "\`$file\`" "$area.xml")"
  done
  compare "total_node_count.txt" "$(cat "$place/$set/$area/total_node_count.txt")" "$(expected_count all "$area.xml")"
}

clip merewether buildings
clip merewether road
clip coast islands

printf '\nThe first kept points of %s:\n' "merewether/road/mw_1.xyz"
head -n 4 "$place/merewether/road/mw_1.xyz" | sed 's/^/  /'
printf '\nThe results are in build/demo.\n'

if [ "$mismatches" -gt 0 ]; then
  echo "$mismatches counts differ from examples/README.md." >&2
  exit 1
fi
echo "All counts agree with examples/README.md."
