#!/usr/bin/env bash
# scripts/release.sh --check: does the last commit give the same release, byte for byte, in another directory, with
# another mask of permissions, language and time zone?
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/no-arguments.sh

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# A cache of the compiler would answer the second build with the first.
unset CMAKE_CXX_COMPILER_LAUNCHER SOURCE_DATE_EPOCH

# Both now, so that a commit made in the meantime changes nothing.
first=$work/a
second="$work/another place/with a longer name"
git clone --quiet --no-hardlinks . "$first"
(umask 077 && mkdir -p "$work/another place" && git clone --quiet --no-hardlinks "$first" "$second")

echo "First build"
(umask 022 && TZ=UTC LC_ALL=C "$first/scripts/release.sh")
printf '\nSecond build\n'
(umask 077 && TZ=Asia/Tokyo LC_ALL=C.UTF-8 "$second/scripts/release.sh")

echo
if ! diff "$first/build/dist/SHA256SUMS" "$second/build/dist/SHA256SUMS"; then
  kept=$PWD/build/release-check
  rm -rf "$kept"
  mkdir -p "$kept"
  mv "$first/build/dist" "$kept/first"
  mv "$second/build/dist" "$kept/second"
  echo "The two builds differ; both are kept in build/release-check." >&2
  exit 1
fi
echo "Both builds are the same, byte for byte."
