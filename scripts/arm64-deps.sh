#!/usr/bin/env bash
# Unpacks the libraries of the ARM64 build into build/arm64-deps, GoogleTest included, unless they are there already. The other
# scripts run it after scripts/setup.sh arm64.
#
# The packages are those of Debian for arm64. They are unpacked and not installed, so the machine stays one of a single
# architecture, and no package of it changes.
set -euo pipefail
cd "$(dirname "$0")/.."

packages=(libc6-dev libstdc++-12-dev libboost-filesystem-dev libboost-locale-dev libpugixml-dev libfmt-dev
  nlohmann-json3-dev libcli11-dev libcairo2-dev libpango1.0-dev libutfcpp-dev libgtest-dev libgmock-dev)
root=$(realpath -m build/arm64-deps)
# A change of this file unpacks the libraries again.
rules=$(sha256sum <scripts/arm64-deps.sh)
[ "$(cat "$root/done" 2>/dev/null)" != "$rules" ] || exit 0

echo "Fetching the libraries for ARM64 ..."
apt=$root/apt
database=$root/var/lib/dpkg
rm -rf "$root"
mkdir -p "$apt/state" "$apt/lists/partial" "$apt/archives/partial" "$database"/{info,triggers,updates}
: >"$apt/status"
options=(-qq -o APT::Architecture=arm64 -o APT::Architectures=arm64 -o APT::Sandbox::User=root -o Dir::State="$apt/state"
  -o Dir::State::status="$apt/status" -o Dir::State::lists="$apt/lists" -o Dir::Cache="$apt"
  -o Dir::Cache::archives="$apt/archives")
apt-get "${options[@]}" update
apt-get "${options[@]}" install --download-only --yes --no-install-recommends "${packages[@]}" >/dev/null

# For dpkg-shlibdeps, which computes the dependencies of our package: a database of packages, with each library at its path
# on this machine.
echo 1 >"$database/info/format"
for archive in "$apt"/archives/*.deb; do
  dpkg-deb --extract "$archive" "$root"
  dpkg-deb --control "$archive" "$apt/control"
  if [ -e "$apt/control/shlibs" ]; then
    name=$(dpkg-deb --field "$archive" Package):arm64
    sed '/^Package:/a Status: install ok installed' "$apt/control/control" >>"$database/status"
    echo >>"$database/status"
    dpkg-deb --fsys-tarfile "$archive" | tar -t | sed "s|^\.|$root|; s|/$||" >"$database/info/$name.list"
    for kind in shlibs symbols; do
      [ ! -e "$apt/control/$kind" ] || mv "$apt/control/$kind" "$database/info/$name.$kind"
    done
  fi
  rm -r "$apt/control"
done

# Absolute links lead into this directory, as they would lead into the root directory of an ARM64 machine.
find "$root" -type l -lname '/*' | while read -r link; do
  ln -sfn --relative "$root$(readlink "$link")" "$link"
done
rm -rf "$apt"
echo "$rules" >"$root/done"
