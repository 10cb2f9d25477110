#!/usr/bin/env bash
# Runs the demo command and the test command of README.md on a bare machine: in a fresh minimal Debian, from the archive of
# the last commit, without git, as root and as a user with sudo. Needs root and the network.
#
#     scripts/test-bare-machine.sh                      all four; about half an hour on two processors
#     scripts/test-bare-machine.sh demo.sh root         one of them: demo.sh or test.sh, root or sudo
set -euo pipefail
cd "$(dirname "$0")/.."

commands=(demo.sh test.sh)
users=(root sudo)
if [ $# -gt 0 ]; then
  if [ $# -ne 2 ] || [[ $1 != @(demo.sh|test.sh) ]] || [[ $2 != @(root|sudo) ]]; then
    echo "Usage: scripts/test-bare-machine.sh [demo.sh|test.sh root|sudo]" >&2
    exit 2
  fi
  commands=("$1")
  users=("$2")
fi

scripts/setup.sh chroot
mkdir -p build
work=$(mktemp -d "$PWD/build/bare-machine-XXXXXX")
trap 'rm -rf --one-file-system "$work"' EXIT
debootstrap --variant=minbase bookworm "$work/fresh" >"$work/log" || { tail -n 20 "$work/log" >&2; exit 1; }
apt-config dump Acquire >"$work/fresh/etc/apt/apt.conf.d/acquire"
# debootstrap leaves this to the administrator. Slurm needs the second name.
printf '127.0.0.1 localhost\n127.0.1.1 %s\n' "$(uname -n)" >"$work/fresh/etc/hosts"
git archive --prefix=vadelclip/ --output="$work/vadelclip.tar" HEAD

# in_system <command>...: runs a command in the system, with mounts and processes that end with the command.
in_system() {
  # shellcheck disable=SC2016 # Expanded by the inner shell.
  unshare --mount --pid --fork --kill-child sh -ec 'system=$1; shift
    mount -t proc proc "$system/proc"
    mkdir -p "$system/dev/pts" "$system/dev/shm"
    mount -t devpts -o newinstance,ptmxmode=0666 devpts "$system/dev/pts"
    mount -t tmpfs tmpfs "$system/dev/shm"
    ln -sf pts/ptmx "$system/dev/ptmx"
    exec chroot "$system" "$@"' sh "$work/system" "$@"
}

# run <command> <user>
# Each step returns its failure, because bash ignores "set -e" in a function that is called in a condition.
run() {
  local home=/root as=()
  rm -rf --one-file-system "$work/system"
  cp -a "$work/fresh" "$work/system" || return
  if [ "$2" = sudo ]; then
    in_system sh -ec 'apt-get update -qq; apt-get install -y -qq --no-install-recommends sudo
      useradd --create-home --shell /bin/bash builder
      echo "builder ALL=(ALL) NOPASSWD: ALL" >/etc/sudoers.d/builder' || return
    home=/home/builder
    as=(setpriv --reuid=builder --regid=builder --init-groups)
  fi
  tar -xf "$work/vadelclip.tar" -C "$work/system$home" || return
  [ "$2" = root ] || in_system chown -R builder: "$home" || return
  # Without the environment of this machine.
  in_system "${as[@]}" env -i -C "$home/vadelclip" HOME="$home" PATH=/usr/sbin:/usr/bin:/sbin:/bin "scripts/$1"
}

for command in "${commands[@]}"; do
  for user in "${users[@]}"; do
    log=build/bare-machine-$command-$user.log
    started=$SECONDS
    if ! run "$command" "$user" >"$log" 2>&1 </dev/null; then
      tail -n 60 "$log"
      echo "scripts/$command fails as $user; the whole output is $log" >&2
      exit 1
    fi
    printf 'scripts/%s passes as %s: %d:%02d\n' "$command" "$user" $(((SECONDS - started) / 60)) $(((SECONDS - started) % 60))
  done
done
