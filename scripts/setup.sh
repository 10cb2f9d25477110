#!/usr/bin/env bash
# Installs the Debian packages that the build needs, and with arguments those of other purposes: scripts/setup.sh [purpose...]
#
#     test       the test suite, also with sanitizers        package    building the Debian package
#     check      scripts/check.sh: coverage, analysis, ...   windows    building and testing for Windows
#     bench      the benchmarks                              arm64      building and testing for ARM64
#     chroot     testing on a bare machine
#
# Does nothing if all are installed. The other scripts run it.
set -euo pipefail

build=(g++ cmake ninja-build gettext libboost-filesystem-dev libboost-locale-dev libpugixml-dev libfmt-dev
  nlohmann-json3-dev libcli11-dev libcairo2-dev libpango1.0-dev libutfcpp-dev pkgconf)
test=(libgtest-dev libgmock-dev locales python3 python3-jsonschema clang-14 llvm-14 libclang-rt-14-dev bash-completion man-db
  libgdal-dev gdal-bin python3-gdal parallel openssh-client openssh-server munge slurm-wlm)
package=(binutils dpkg-dev file gzip libgdal-dev)
check=("${test[@]}" "${package[@]}" libbenchmark-dev libgeos++-dev clang-format clang-tidy cppcheck shellcheck valgrind
  lintian piuparts)
bench=(libbenchmark-dev libgeos++-dev gmt python3 python3-pandas python3-shapely time)
windows=(g++-mingw-w64-x86-64-posix wine wine64 dpkg-dev xz-utils googletest python3)
arm64=(g++-aarch64-linux-gnu qemu-user-static python3 "${package[@]}")
chroot=(debootstrap util-linux)

wanted=("${build[@]}")
for purpose in "$@"; do
  case "$purpose" in
    test) wanted+=("${test[@]}") ;;
    check) wanted+=("${check[@]}") ;;
    package) wanted+=("${package[@]}") ;;
    bench) wanted+=("${bench[@]}") ;;
    windows) wanted+=("${windows[@]}") ;;
    arm64) wanted+=("${arm64[@]}") ;;
    chroot) wanted+=("${chroot[@]}") ;;
    *) echo "Usage: scripts/setup.sh [test|check|package|windows|arm64|bench|chroot]..." >&2; exit 2 ;;
  esac
done

if ! command -v apt-get >/dev/null || ! command -v dpkg-query >/dev/null; then
  echo "This is not a Debian system. Please install the counterparts of these packages, then build with CMake:" >&2
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
    echo "Packages are missing, and there is no sudo to install them. Please run as root:" >&2
    echo "  apt-get install ${missing[*]}" >&2
    exit 1
  fi
  as_root=(sudo)
fi
echo "Installing: ${missing[*]}"
"${as_root[@]}" apt-get update -qq

# The tests start the daemons of these packages with their own configuration. The system must not, now or at its next start.
daemons=()
for package in "${missing[@]}"; do
  case "$package" in
    openssh-server) daemons+=(ssh) ;;
    munge) daemons+=(munge) ;;
    slurm-wlm) daemons+=(slurmctld slurmd) ;;
  esac
done
policy=/usr/sbin/policy-rc.d
if [ ${#daemons[@]} -gt 0 ] && [ ! -e "$policy" ]; then
  trap '"${as_root[@]}" rm -f "$policy"' EXIT
  printf '#!/bin/sh\nexit 101\n' | "${as_root[@]}" install -m 755 /dev/stdin "$policy"
fi
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
if [ ${#daemons[@]} -gt 0 ] && [ -d /run/systemd/system ]; then
  "${as_root[@]}" systemctl disable --quiet "${daemons[@]}"
fi
