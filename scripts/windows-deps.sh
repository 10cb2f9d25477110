#!/usr/bin/env bash
# Puts the libraries of the Windows build under build/windows-deps, and does nothing where they are there already; with
# the argument "test" GoogleTest too. Run by the other scripts, after scripts/setup.sh windows.
#
# Boost.Filesystem, Boost.Locale and pugixml are built from Debian's source packages, which apt-get fetches and checks
# as it does with any package; fmt and nlohmann-json need their headers alone.
set -euo pipefail
cd "$(dirname "$0")/.."

kind=${1:-tool}
if [ $# -gt 1 ] || { [ "$kind" != tool ] && [ "$kind" != test ]; }; then
  echo "Usage: scripts/windows-deps.sh [test]" >&2
  exit 2
fi
prefix=$PWD/build/windows-deps
sources=$prefix/src
# What was built by other rules is built again.
rules=$(cat scripts/windows-deps.sh cmake/windows-deps/CMakeLists.txt cmake/mingw-w64.cmake | sha256sum)
done_with() { [ "$(cat "$prefix/$1.done" 2>/dev/null)" = "$rules" ]; }
if done_with test || done_with "$kind"; then
  exit 0
fi

# The machine's own sources of Debian packages, asked for source packages, in a private list beside private caches:
# nothing of the machine's set-up changes.
write_source_list() {
  local list=$1 known
  for known in /etc/apt/sources.list.d/debian.sources /etc/apt/sources.list; do
    if [ -s "$known" ]; then
      case $known in
        *.sources) sed 's/^Types: .*/Types: deb-src/' "$known" >"$list.sources" ;;
        *) sed -nE 's/^deb(-src)?([[:space:]])/deb-src\2/p' "$known" | sort -u >"$list.list" ;;
      esac
    fi
  done
}

fetch_sources() {
  local apt=$prefix/apt options list
  rm -rf "$apt" "$sources"
  mkdir -p "$apt/lists/partial" "$apt/cache/archives/partial" "$apt/parts" "$sources"
  write_source_list "$apt/parts/debian"
  options=(-qq -o Dir::Etc::sourcelist=/dev/null -o Dir::Etc::sourceparts="$apt/parts" -o Dir::State::lists="$apt/lists"
    -o Dir::Cache="$apt/cache" -o APT::Sandbox::User=root)
  apt-get "${options[@]}" update
  (cd "$sources" && apt-get "${options[@]}" source --download-only boost1.74 pugixml)
  tar -C "$sources" -xf "$sources"/boost1.74_*.orig.tar.xz boost/libs/filesystem/src boost/libs/locale/src \
    boost/LICENSE_1_0.txt
  mkdir "$sources/pugixml"
  tar -C "$sources/pugixml" --strip-components=1 -xf "$sources"/pugixml_*.orig.tar.gz
  tar -C "$sources/pugixml" -xf "$sources"/pugixml_*.debian.tar.xz debian/copyright
  note_terms
  rm -rf "$apt" "$sources"/*.tar.* "$sources"/*.dsc
}

# What the package for Windows tells of the source packages, as scripts/windows_notices.py looks for it.
note_terms() {
  local noted=$prefix/licences package
  rm -rf "$noted"
  mkdir -p "$noted"
  cp "$sources/boost/LICENSE_1_0.txt" "$noted/boost1.74.txt"
  cp "$sources/pugixml/debian/copyright" "$noted/pugixml.txt"
  for package in boost1.74 pugixml; do
    sed -n 's/^Version: //p' "$sources/$package"_*.dsc >"$noted/$package.version"
  done
}

# The package file of fmt names a library of this machine, so here is one that takes the headers alone.
add_header_only_libraries() {
  mkdir -p "$prefix/include" "$prefix/lib/cmake/fmt" "$prefix/share/cmake"
  ln -sfn /usr/include/boost "$prefix/include/boost"
  ln -sfn /usr/include/fmt "$prefix/include/fmt"
  ln -sfn /usr/include/nlohmann "$prefix/include/nlohmann"
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

build() {
  local tests=OFF
  [ "$kind" = tool ] || tests=ON
  # Afresh, since a release builds them from the unpacked archive, at another place.
  cmake --fresh -S cmake/windows-deps -B "$prefix/build" -G Ninja -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_TOOLCHAIN_FILE="$PWD/cmake/mingw-w64.cmake" -DCMAKE_INSTALL_PREFIX="$prefix" \
    -DWINDOWS_DEPS_SOURCES="$sources" -DWINDOWS_DEPS_TESTS="$tests"
  cmake --build "$prefix/build"
  cmake --install "$prefix/build"
}

echo "Building the libraries for Windows ($kind) ..."
mkdir -p "$prefix"
log=$(mktemp)
exec 3>&1 >"$log" 2>&1
trap 'status=$?; [ $status -eq 0 ] || cat "$log" >&3; rm -f "$log"' EXIT
done_with tool || fetch_sources
add_header_only_libraries
build
echo "$rules" >"$prefix/$kind.done"
