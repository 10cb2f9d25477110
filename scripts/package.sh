#!/usr/bin/env bash
# Builds the Debian package in build/package (installing what is missing) and prints its path. The same commit gives the
# same bytes, wherever and whenever it is built with the same compiler and libraries.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/no-arguments.sh

scripts/setup.sh package
SOURCE_DATE_EPOCH=$(scripts/source-date.sh)
export SOURCE_DATE_EPOCH
# What the environment would add to the options of the build.
unset CPPFLAGS CFLAGS CXXFLAGS LDFLAGS
# The directories of the package get their permissions from it.
umask 022

rm -rf build/package/_CPack_Packages build/package/*.deb
# From nothing, since a configured tree keeps the date of the changelog and options that were given to it once. What is
# compiled already is kept where the options are the same: scripts/test.sh has tested it before.
rm -f build/package/CMakeCache.txt
scripts/build.sh package "-DVADELCLIP_WERROR=${VADELCLIP_WERROR:-OFF}"

log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! (cd build/package && cpack) >"$log" 2>&1; then
  cat "$log" >&2
  exit 1
fi
rm -rf build/package/_CPack_Packages
ls build/package/*.deb
