#!/usr/bin/env bash
# Builds a release from the last commit into build/dist: the sources, the Debian packages for the architecture of this machine
# and for ARM64, the zip for Windows, SHA256SUMS.
# The packages are built from the archive of the sources, which shows that it is complete.
#
#     scripts/release.sh
#     scripts/release.sh --check    builds it in two clones at different places and compares the bytes
set -euo pipefail
cd "$(dirname "$0")/.."

if [ "$*" = --check ]; then
  work=$(mktemp -d)
  trap 'rm -rf "$work"' EXIT
  # ccache would use objects of the first build for the second one.
  unset CMAKE_CXX_COMPILER_LAUNCHER SOURCE_DATE_EPOCH
  other="$work/another place"
  git clone --quiet --no-hardlinks . "$work/first"
  git clone --quiet --no-hardlinks "$work/first" "$other"
  (umask 022 && TZ=UTC LC_ALL=C "$work/first/scripts/release.sh")
  (umask 077 && TZ=Asia/Tokyo LC_ALL=C.UTF-8 "$other/scripts/release.sh")
  for file in "$work"/first/build/dist/*; do
    cmp "$file" "$other/build/dist/${file##*/}"
  done
  echo "Both builds have the same bytes."
  exit
elif [ $# -gt 0 ]; then
  echo "Usage: scripts/release.sh [--check]" >&2
  exit 2
fi

SOURCE_DATE_EPOCH=$(git log -1 --format=%ct)
export SOURCE_DATE_EPOCH
version=$(git show HEAD:CMakeLists.txt | sed -n 's/^project(Vadelclip VERSION \([0-9.]*\) .*/\1/p')
name=vadelclip-$version
dist=$PWD/build/dist
sources=$dist/sources/$name
rm -rf "$dist"
mkdir -p "$dist/sources"

echo "Archive of the sources"
# The options override a configuration of git that would change the files.
git -c tar.umask=0022 -c core.autocrlf=false -c core.eol=lf archive --format=tar --prefix="$name/" HEAD |
  gzip -9n >"$dist/$name.tar.gz"
tar -xf "$dist/$name.tar.gz" -C "$dist/sources"

echo "Debian package"
"$sources/scripts/package.sh"
cp "$sources"/build/package/vadelclip_*.deb "$dist"

# The libraries of the other platforms are fetched once and kept in this directory.
mkdir -p build/arm64-deps build/windows-deps
ln -s "$PWD/build/arm64-deps" "$PWD/build/windows-deps" "$sources/build"

echo "Debian package for ARM64"
"$sources/scripts/package.sh" arm64
cp "$sources"/build/package-arm64/vadelclip_*.deb "$dist"

echo "Zip for Windows"
"$sources/scripts/build-windows.sh"
cp "$sources/build/windows/Vadelclip-$version-windows-x64.zip" "$dist"

rm -rf "$dist/sources"
(cd "$dist" && sha256sum -- * >SHA256SUMS && cat SHA256SUMS)
grep -q "^## $version\b" CHANGELOG.md || echo "CHANGELOG.md has no section for $version yet."
git diff --quiet HEAD || echo "Changes that are not committed are not in the release."
