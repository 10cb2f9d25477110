#!/usr/bin/env bash
# Builds the libraries of the Windows build in build/windows-deps, GoogleTest included, unless they are there already. The
# other scripts run it after scripts/setup.sh windows.
#
# Boost.Filesystem, Boost.Locale and pugixml are built from Debian's source packages. Of fmt and nlohmann-json the headers of
# this machine are enough.
set -euo pipefail
cd "$(dirname "$0")/.."

prefix=$PWD/build/windows-deps
sources=$prefix/src
# A change of these files builds the libraries again.
rules=$(cat scripts/windows-deps.sh cmake/windows-deps/CMakeLists.txt cmake/mingw-w64.cmake | sha256sum)
[ "$(cat "$prefix/done" 2>/dev/null)" != "$rules" ] || exit 0

# Fetches and unpacks the source packages, and records their versions and terms for scripts/package-windows.py. apt uses the
# package sources of the machine for source packages, with its files in this directory, so the machine is not changed.
fetch_sources() {
  local apt=$prefix/apt package options
  rm -rf "$apt" "$sources" "$prefix/licences"
  mkdir -p "$apt/lists/partial" "$apt/cache/archives/partial" "$apt/parts" "$sources/pugixml" \
    "$prefix"/licences/{boost1.74,pugixml}
  if [ -s /etc/apt/sources.list.d/debian.sources ]; then
    sed 's/^Types: .*/Types: deb-src/' /etc/apt/sources.list.d/debian.sources >"$apt/parts/debian.sources"
  else
    sed -nE 's/^deb(-src)?([[:space:]])/deb-src\2/p' /etc/apt/sources.list | sort -u >"$apt/parts/debian.list"
  fi
  options=(-qq -o Dir::Etc::sourcelist=/dev/null -o Dir::Etc::sourceparts="$apt/parts" -o Dir::State::lists="$apt/lists"
    -o Dir::Cache="$apt/cache" -o APT::Sandbox::User=root)
  apt-get "${options[@]}" update
  (cd "$sources" && apt-get "${options[@]}" source --download-only boost1.74 pugixml)
  tar -C "$sources" -xf "$sources"/boost1.74_*.orig.tar.xz boost/libs/filesystem/src boost/libs/locale/src \
    boost/LICENSE_1_0.txt
  tar -C "$sources/pugixml" --strip-components=1 -xf "$sources"/pugixml_*.orig.tar.gz
  tar -C "$sources/pugixml" -xf "$sources"/pugixml_*.debian.tar.xz debian/copyright
  cp "$sources/boost/LICENSE_1_0.txt" "$prefix/licences/boost1.74/copyright"
  cp "$sources/pugixml/debian/copyright" "$prefix/licences/pugixml/copyright"
  for package in boost1.74 pugixml; do
    sed -n 's/^Version: //p' "$sources/$package"_*.dsc >"$prefix/licences/$package/version"
  done
  rm -rf "$apt" "$sources"/*.tar.* "$sources"/*.dsc
}

# Debian's package file of fmt names a library of this machine. This one uses the headers only.
add_header_only_libraries() {
  mkdir -p "$prefix/include" "$prefix/lib/cmake/fmt" "$prefix/share/cmake"
  ln -sfn -t "$prefix/include" /usr/include/{boost,fmt,nlohmann}
  cp -r /usr/share/cmake/nlohmann_json "$prefix/share/cmake"
  cp "/usr/lib/$(dpkg-architecture -qDEB_HOST_MULTIARCH)/cmake/fmt/fmt-config-version.cmake" "$prefix/lib/cmake/fmt"
  cat >"$prefix/lib/cmake/fmt/fmt-config.cmake" <<'CONFIG'
if(NOT TARGET fmt::fmt)
  get_filename_component(prefix "${CMAKE_CURRENT_LIST_DIR}/../../.." ABSOLUTE)
  add_library(fmt::fmt INTERFACE IMPORTED)
  target_include_directories(fmt::fmt INTERFACE "${prefix}/include")
  target_compile_definitions(fmt::fmt INTERFACE FMT_HEADER_ONLY=1)
endif()
CONFIG
}

echo "Building the libraries for Windows ..."
fetch_sources
add_header_only_libraries
# --fresh, because a release builds them from the unpacked archive, at another place.
cmake --fresh -S cmake/windows-deps -B "$prefix/build" -G Ninja -DCMAKE_BUILD_TYPE=Release \
  -DCMAKE_TOOLCHAIN_FILE="$PWD/cmake/mingw-w64.cmake" -DCMAKE_INSTALL_PREFIX="$prefix" \
  -DWINDOWS_DEPS_SOURCES="$sources" >/dev/null
cmake --build "$prefix/build" -- --quiet
cmake --install "$prefix/build" >/dev/null
echo "$rules" >"$prefix/done"
