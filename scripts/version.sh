#!/usr/bin/env bash
# Prints the version, which stands in project() of CMakeLists.txt and nowhere else.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/no-arguments.sh

sed -n 's/^project(Vadelclip VERSION \([0-9.]*\) .*/\1/p' CMakeLists.txt | grep .
