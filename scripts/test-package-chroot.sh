#!/usr/bin/env bash
# The second half of scripts/test-package.sh --chroot: installs a package into a fresh minimal system of the release
# that this machine runs, from the mirror that this machine's apt uses, and checks it there. Takes root, the network and
# a few minutes; leaves nothing.
set -euo pipefail
cd "$(dirname "$0")/.."
package=${1:-}
if [ $# -ne 1 ] || ! [ -f "$package" ]; then
  echo "Usage: scripts/test-package-chroot.sh <path of the package>" >&2
  exit 2
fi

scripts/setup.sh chroot
source scripts/package-checks.sh
source scripts/fresh-debian.sh

work=$(mktemp -d)
system=$work/system
trap 'rm -rf --one-file-system "$work"' EXIT
chmod 755 "$work"

make_fresh_debian "$system" "$work/log"
cp "$package" "$system/vadelclip.deb"

packages() { chroot "$system" dpkg-query -W -f='${Package}\n' | LC_ALL=C sort; }
packages >"$work/before"
in_system "$system" sh -c 'apt-get update -qq && DEBIAN_FRONTEND=noninteractive apt-get install -y -qq \
  --no-install-recommends /vadelclip.deb' >"$work/log" 2>&1 || { tail -n 20 "$work/log" >&2; exit 1; }
printf '  Installed with it: %s\n' "$(packages | LC_ALL=C comm -13 "$work/before" - | xargs)"

inside=(in_system "$system" setpriv --reuid=nobody --regid=nogroup --clear-groups env HOME=/nonexistent LC_ALL=C.UTF-8)
check_installed "$system/usr/share/man/man1"

chroot "$system" dpkg --purge vadelclip >"$work/log" 2>&1
expect "nothing is left behind" "" "$(find "$system" -xdev -iname '*vadel*' ! -path "$system/vadelclip.deb")"
finish_checks
