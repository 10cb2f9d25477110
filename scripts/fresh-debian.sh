# shellcheck shell=bash
# Sourced by scripts that test in a fresh system. They take root and the network.

# make_fresh_debian <directory> <log>
# Sets up a minimal Debian of the release that this machine runs, from the mirror and with the proxy of this machine's apt.
make_fresh_debian() {
  local VERSION_CODENAME mirror
  source /etc/os-release
  # shellcheck disable=SC2016 # The names in the format are apt's own.
  mirror=$(apt-get indextargets --format '$(ORIGIN) $(CODENAME) $(COMPONENT) $(REPO_URI)' 'Created-By: Packages' |
    awk -v release="$VERSION_CODENAME" '$1 == "Debian" && $2 == release && $3 == "main" {print $4; exit}')
  if [ -z "$mirror" ]; then
    echo "The sources of apt name no mirror of Debian $VERSION_CODENAME." >&2
    return 1
  fi
  echo "Setting up a fresh Debian $VERSION_CODENAME"
  debootstrap --variant=minbase "$VERSION_CODENAME" "$1" "$mirror" >"$2" 2>&1 || { tail -n 20 "$2" >&2; return 1; }
  apt-config dump Acquire >"$1/etc/apt/apt.conf.d/acquire"
}

# in_system <directory> <command>...
# Runs a command in it with mounts and processes of its own: both end with the command.
in_system() {
  # shellcheck disable=SC2016 # Expanded by the inner shell.
  unshare --mount --pid --fork --kill-child sh -ec 'system=$1; shift
    mount -t proc proc "$system/proc"
    mkdir -p "$system/dev/pts" "$system/dev/shm"
    mount -t devpts -o newinstance,ptmxmode=0666 devpts "$system/dev/pts"
    mount -t tmpfs tmpfs "$system/dev/shm"
    ln -sf pts/ptmx "$system/dev/ptmx"
    exec chroot "$system" "$@"' sh "$@"
}
