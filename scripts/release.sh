#!/usr/bin/env bash
# Builds what a release hands out, from the last commit and nothing else, into build/dist: the sources, the Debian
# package, the zip for Windows, and SHA256SUMS. The packages are built from the archive of the sources, so that it is
# known to hold all they need.
#
#     scripts/release.sh
#     scripts/release.sh --check    builds it twice, in two clean clones at different places, and compares the sums
set -euo pipefail
cd "$(dirname "$0")/.."

if [ "$*" = --check ]; then
  exec scripts/check-release.sh
elif [ $# -gt 0 ]; then
  echo "Usage: scripts/release.sh [--check]" >&2
  exit 2
fi

SOURCE_DATE_EPOCH=$(scripts/source-date.sh)
export SOURCE_DATE_EPOCH
version=$(scripts/version.sh)
name=vadelclip-$version
dist=$PWD/build/dist
rm -rf "$dist"
mkdir -p "$dist"

echo "Archive of the sources"
# What the configuration of git would change in the files.
git -c tar.umask=0022 -c core.autocrlf=false -c core.eol=lf archive --format=tar --prefix="$name/" HEAD |
  gzip -9n >"$dist/$name.tar.gz"

sources=$dist/sources/$name
mkdir -p "$dist/sources"
tar -xf "$dist/$name.tar.gz" -C "$dist/sources"
if [ "$("$sources/scripts/version.sh")" != "$version" ]; then
  echo "The version in CMakeLists.txt is not committed." >&2
  exit 1
fi

echo "Debian package"
"$sources/scripts/package.sh"
cp "$sources"/build/package/vadelclip_*.deb "$dist"

echo "Zip for Windows"
# Its libraries are built once and kept here, by the rules of the archive.
mkdir -p build/windows-deps
ln -s "$PWD/build/windows-deps" "$sources/build/windows-deps"
"$sources/scripts/build-windows.sh"
cp "$sources/build/windows/Vadelclip-$version-windows-x64.zip" "$dist"

rm -rf "$dist/sources"
(
  cd "$dist"
  files=(*)
  sha256sum -- "${files[@]}" >SHA256SUMS
)
printf '\nbuild/dist:\n'
cat "$dist/SHA256SUMS"
grep -q "^## $version\b" CHANGELOG.md || echo "CHANGELOG.md has no section for $version yet."
git diff --quiet HEAD || echo "What is not committed is not in it."
