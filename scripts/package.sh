#!/usr/bin/env bash
# Builds the Debian packages, the tool and the driver of GDAL, and prints their paths. Installs what is missing. The same commit makes the same bytes in every
# directory and at every time, with the same compiler and libraries.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh package
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

cmake --preset release -DVADELCLIP_TESTS=OFF -DVADELCLIP_GDAL=ON >/dev/null
cmake --build --preset release -- --quiet
rm -rf build/package
cpack --config build/release/CPackConfig.cmake -B build/package >/dev/null
rm -r build/package/_CPack_Packages
ls build/package/*.deb
