#!/usr/bin/env bash
# Prints the time of the sources, in seconds since 1970, for whatever is built to be handed out: what SOURCE_DATE_EPOCH
# says; or the time of the last commit; or, without git, the time of the files, which in a source archive is that commit's.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/no-arguments.sh

if [ -n "${SOURCE_DATE_EPOCH:-}" ]; then
  echo "$SOURCE_DATE_EPOCH"
elif [ -e .git ] && command -v git >/dev/null; then
  git log -1 --format=%ct
else
  stat --format=%Y CMakeLists.txt
fi
