#!/usr/bin/env bash
# Builds the Debian packages, the tool and the driver of GDAL, and prints their paths: scripts/package.sh [arm64]
#
# Builds for this machine, or the tool alone for ARM64 on any machine. Installs what is missing. The same commit makes the
# same bytes in every directory and at every time, with the same compiler and libraries.
set -euo pipefail
cd "$(dirname "$0")/.."

preset=release
package=build/package
gdal=ON
if [ "$*" = arm64 ]; then
  scripts/setup.sh package arm64
  scripts/arm64-deps.sh
  preset=arm64
  package=build/package-arm64
  gdal=OFF
  # dpkg-shlibdeps looks for the ARM64 libraries in this database.
  DPKG_ADMINDIR=$(realpath build/arm64-deps/var/lib/dpkg)
  export DPKG_ADMINDIR DEB_HOST_ARCH=arm64
elif [ $# -gt 0 ]; then
  echo "Usage: scripts/package.sh [arm64]" >&2
  exit 2
else
  scripts/setup.sh package
fi
# The time of the package: that of the commit, or of the files in a source archive, which is the same.
if [ -z "${SOURCE_DATE_EPOCH:-}" ]; then
  if [ -e .git ]; then
    SOURCE_DATE_EPOCH=$(git log -1 --format=%ct)
  else
    SOURCE_DATE_EPOCH=$(stat --format=%Y CMakeLists.txt)
  fi
fi
export SOURCE_DATE_EPOCH
unset CPPFLAGS CFLAGS CXXFLAGS LDFLAGS
# The directories of the package have the permissions that the mask leaves.
umask 022

cmake --preset "$preset" -DVADELCLIP_TESTS=OFF "-DVADELCLIP_GDAL=$gdal" >/dev/null
cmake --build --preset "$preset" -- --quiet
rm -rf "$package"
cpack --config "build/$preset/CPackConfig.cmake" -B "$package" >/dev/null
rm -r "$package/_CPack_Packages"
ls "$package"/*.deb
