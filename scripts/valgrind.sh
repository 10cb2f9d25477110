#!/usr/bin/env bash
# Clips a complete example under valgrind, in German and with messages: no wrong access, no leak, and the same bytes as
# without it: scripts/valgrind.sh [build directory, build/release]
set -euo pipefail
cd "$(dirname "$0")/.."

if [ $# -gt 1 ] || [[ ${1:-} == -* ]]; then
  echo "Usage: scripts/valgrind.sh [build directory, build/release]" >&2
  exit 2
fi
tool=$(realpath "${1:-build/release}")/Vadelclip
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cp -r examples/merewether "$scratch"
cd "$scratch"

"$tool" merewether/nodes plain merewether/buildings.xml
# What Boost.Locale keeps until the end counts as reachable and is no leak.
valgrind --quiet --error-exitcode=99 --leak-check=full --errors-for-leak-kinds=definite,indirect,possible \
  "$tool" merewether/nodes checked merewether/buildings.xml -pipe -lang=de 3>messages.jsonl
diff -r merewether/plain merewether/checked
grep -q '"type":"finish".*abgeschlossen' messages.jsonl
