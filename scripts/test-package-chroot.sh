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
source /etc/os-release
mirror=$(apt-get indextargets --format '$(ORIGIN) $(CODENAME) $(COMPONENT) $(REPO_URI)' 'Created-By: Packages' |
  awk -v release="$VERSION_CODENAME" '$1 == "Debian" && $2 == release && $3 == "main" {print $4; exit}')
if [ -z "$mirror" ]; then
  echo "The sources of apt name no mirror of Debian $VERSION_CODENAME." >&2
  exit 1
fi

work=$(mktemp -d)
system=$work/system
trap 'rm -rf --one-file-system "$work"' EXIT
chmod 755 "$work"

echo "  Setting up a fresh Debian $VERSION_CODENAME"
debootstrap --variant=minbase "$VERSION_CODENAME" "$system" "$mirror" >"$work/log" 2>&1 ||
  { tail -n 20 "$work/log" >&2; exit 1; }
cp "$package" "$system/vadelclip.deb"
apt-config dump Acquire >"$system/etc/apt/apt.conf.d/acquire"

# A name space of its own for mounts and processes, so that neither outlives the command.
in_system=(unshare --mount --pid --fork --mount-proc="$system/proc" chroot)
packages() { chroot "$system" dpkg-query -W -f='${Package}\n' | LC_ALL=C sort; }
packages >"$work/before"
"${in_system[@]}" "$system" sh -c 'apt-get update -qq && DEBIAN_FRONTEND=noninteractive apt-get install -y -qq \
  --no-install-recommends /vadelclip.deb' >"$work/log" 2>&1 || { tail -n 20 "$work/log" >&2; exit 1; }
printf '  Installed with it: %s\n' "$(packages | LC_ALL=C comm -13 "$work/before" - | xargs)"

inside=("${in_system[@]}" --userspec=nobody:nogroup "$system" env HOME=/nonexistent LC_ALL=C.UTF-8)
check_installed "$system/usr/share/man/man1"

chroot "$system" dpkg --purge vadelclip >"$work/log" 2>&1
expect "nothing is left behind" "" "$(find "$system" -xdev -iname '*vadel*' ! -path "$system/vadelclip.deb")"
finish_checks
