#!/usr/bin/env bash
# scripts/release.sh --check: does the last commit give the same release, byte for byte, in another directory, with
# another mask of permissions, language and time zone?
set -euo pipefail
cd "$(dirname "$0")/.."

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# A cache of the compiler would answer the second build with the first.
unset CMAKE_CXX_COMPILER_LAUNCHER SOURCE_DATE_EPOCH

build_in() {
  git clone --quiet --no-hardlinks . "$1"
  "$1/scripts/release.sh"
}

echo "First build"
(umask 022 && TZ=UTC LC_ALL=C build_in "$work/a")
printf '\nSecond build\n'
mkdir -p "$work/another place"
(umask 077 && TZ=Asia/Tokyo LC_ALL=C.UTF-8 build_in "$work/another place/with a longer name")

echo
if ! diff "$work/a/build/dist/SHA256SUMS" "$work/another place/with a longer name/build/dist/SHA256SUMS"; then
  kept=$PWD/build/release-check
  rm -rf "$kept"
  mkdir -p "$kept"
  mv "$work/a/build/dist" "$kept/first"
  mv "$work/another place/with a longer name/build/dist" "$kept/second"
  echo "The two builds differ; both are kept in build/release-check." >&2
  exit 1
fi
echo "Both builds are the same, byte for byte."
