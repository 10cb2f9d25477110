#!/usr/bin/env bash
# Tests the Debian package that scripts/package.sh has built: lintian; then installs it, runs it as a user without
# rights from another directory, runs the examples of its man pages, and removes it again, with nothing left behind.
#
#     scripts/test-package.sh             on this machine, as root; leaves it as it was
#     scripts/test-package.sh --chroot    in a fresh system with nothing but what the package asks for
set -euo pipefail
cd "$(dirname "$0")/.."

if [ $# -gt 0 ] && [ "$*" != --chroot ]; then
  echo "Usage: scripts/test-package.sh [--chroot]" >&2
  exit 2
fi
if [ "$(id -u)" -ne 0 ]; then
  echo "Installing a package takes root." >&2
  exit 1
fi
shopt -s nullglob
packages=("$PWD"/build/package/vadelclip_*.deb)
shopt -u nullglob
case ${#packages[@]} in
  0) echo "Run scripts/package.sh first." >&2; exit 1 ;;
  1) package=${packages[0]} ;;
  *) printf 'There is more than one package:\n' >&2; printf '  %s\n' "${packages[@]}" >&2; exit 1 ;;
esac

if [ "${1:-}" = --chroot ]; then
  exec scripts/test-package-chroot.sh "$package"
fi
source scripts/package-checks.sh

state=$(dpkg-query -W -f='${db:Status-Status}' vadelclip 2>/dev/null || true)
if { [ -n "$state" ] && [ "$state" != not-installed ]; } || command -v Vadelclip Vadelwatch >/dev/null ||
  [ -e /usr/lib/vadelclip ]; then
  echo "Vadelclip is installed on this machine. It is left alone, so the package cannot be tested here." >&2
  exit 1
fi

expect "lintian has nothing to say" "" "$(lintian --allow-root "$package" 2>&1)"

# Every file of the system, and every package. Left out is what changes by itself or with any use of dpkg.
system_state() {
  find /etc /opt /usr /var -xdev \( -path /var/log -o -path /var/tmp -o -path /var/cache/apt -o -path /var/lib/apt \
    -o -path /var/cache/man -o -path /var/lib/docker -o -name __pycache__ \) -prune \
    -o ! -path '/var/lib/dpkg/*-old' -printf '%M %u:%g %p %l\n' | LC_ALL=C sort
  dpkg-query -W -f='${Package} ${Version} ${db:Status-Status}\n'
}

work=$(mktemp -d)
# Waits for others who are installing something. Without sources, so that nothing but the package can be installed: the
# libraries it asks for are here, because it was built here.
apt() {
  apt-get -y -qq -o DPkg::Lock::Timeout=300 -o Dir::Etc::sourcelist=/dev/null -o Dir::Etc::sourceparts=/dev/null \
    -o Dir::Cache::pkgcache= -o Dir::Cache::srcpkgcache= "$@" >"$work/apt.log" 2>&1 ||
    { cat "$work/apt.log" >&2; return 1; }
}
purge() { ! dpkg-query -W vadelclip >/dev/null 2>&1 || apt purge vadelclip; }
trap 'purge || true; rm -rf "$work"' EXIT
system_state >"$work/before"

# Man pages and documents also where dpkg is told to leave them out, as in images of containers.
apt install --no-install-recommends -o DPkg::Options::=--path-include='/usr/share/doc/vadelclip/*' \
  -o DPkg::Options::=--path-include='/usr/share/man/man1/Vadel*' "$package"
system_state >"$work/installed"
expect "installed is what the package lists, and nothing else" \
  "$(dpkg-deb --contents "$package" | awk '$1 !~ /^d/ {print substr($6, 2)}' | LC_ALL=C sort)" \
  "$(diff "$work/before" "$work/installed" | awk '/^> [-l]/ {print $4}' | grep -v '^/var/lib/dpkg/info/vadelclip\.' |
    LC_ALL=C sort)"

nobody=(setpriv --reuid=nobody --regid=nogroup --clear-groups env HOME=/nonexistent LC_ALL=C.UTF-8)
inside=("${nobody[@]}")
check_installed /usr/share/man/man1
expect "man finds the pages" $'/usr/share/man/man1/Vadelclip.1.gz\n/usr/share/man/man1/Vadelwatch.1.gz' \
  "$(man --where Vadelclip Vadelwatch 2>&1)"
for name in Vadelclip Vadelwatch; do
  expect "bash loads the completion by the name of the command $name" "complete -F _${name,,} $name" \
    "$(bash -c 'source /usr/share/bash-completion/bash_completion; _completion_loader "$1"; complete -p "$1"' bash $name)"
done

purge
system_state >"$work/after"
expect "nothing is left behind" "$(cat "$work/before")" "$(cat "$work/after")"
finish_checks
