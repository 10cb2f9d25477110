#!/usr/bin/env bash
# Installs what building needs from Debian's packages; with arguments also what the checks ("test"), counting the
# reached lines ("coverage"), the sanitizers and fuzzers ("fuzz"), the benchmarks ("bench"), the
# Debian package and its test ("package"), that test in a fresh system ("chroot") or building and testing for Windows
# ("windows") need.
# Does nothing where everything is there. Sourced or run by the other scripts; can be run alone.
set -euo pipefail

build_packages=(g++ cmake ninja-build gettext libboost-filesystem-dev libboost-locale-dev libpugixml-dev libfmt-dev
  nlohmann-json3-dev libcli11-dev libcairo2-dev libpango1.0-dev libutfcpp-dev pkgconf)
test_packages=(libgtest-dev libgmock-dev libbenchmark-dev libgeos++-dev locales python3 clang-format
  clang-tidy cppcheck valgrind)
coverage_packages=("${test_packages[@]}" gcovr)
fuzz_packages=(clang-14 llvm-14 libclang-rt-14-dev libgtest-dev libgmock-dev locales python3)
windows_packages=(g++-mingw-w64-x86-64-posix wine wine64 dpkg-dev xz-utils googletest python3)
bench_packages=(libbenchmark-dev libgeos++-dev gmt python3 python3-pandas python3-shapely time)
package_packages=(bash-completion binutils dpkg-dev file gzip lintian man-db python3)

usage() {
  echo "Usage: scripts/setup.sh [test|coverage|fuzz|package|chroot|windows|bench]..." >&2
  exit 2
}

wanted=("${build_packages[@]}")
for purpose in "$@"; do
  case "$purpose" in
    test) wanted+=("${test_packages[@]}") ;;
    coverage) wanted+=("${coverage_packages[@]}") ;;
    fuzz) wanted+=("${fuzz_packages[@]}") ;;
    package) wanted+=("${package_packages[@]}") ;;
    chroot) wanted+=("${package_packages[@]}" debootstrap util-linux) ;;
    windows) wanted+=("${windows_packages[@]}") ;;
    bench) wanted+=("${bench_packages[@]}") ;;
    *) usage ;;
  esac
done

if ! command -v apt-get >/dev/null || ! command -v dpkg-query >/dev/null; then
  echo "This is no Debian system. Please install the counterparts of these packages, then build with CMake:" >&2
  echo "  ${wanted[*]}" >&2
  echo "  cmake --preset tool && cmake --build --preset tool" >&2
  exit 1
fi

missing=()
for package in "${wanted[@]}"; do
  state=$(dpkg-query -W -f='${Status}' "$package" 2>/dev/null || true)
  [ "$state" = "install ok installed" ] || missing+=("$package")
done
[ ${#missing[@]} -gt 0 ] || exit 0

as_root=()
if [ "$(id -u)" -ne 0 ]; then
  if ! command -v sudo >/dev/null; then
    echo "Missing packages, and neither root nor sudo to install them. Please run as root:" >&2
    echo "  apt-get install ${missing[*]}" >&2
    exit 1
  fi
  as_root=(sudo)
fi
echo "Installing: ${missing[*]}"
"${as_root[@]}" apt-get update -qq
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
