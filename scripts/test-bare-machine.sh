#!/usr/bin/env bash
# Runs the demo command and the test command of README.md on a bare machine: each in a fresh minimal Debian, from the archive
# of the last commit, without git, as root and as a user with sudo. Each command does all of its set-up. Takes root and the network.
#
#     scripts/test-bare-machine.sh                      all four; more than an hour on two processors
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
source scripts/fresh-debian.sh

mkdir -p build
work=$(mktemp -d "$PWD/build/bare-machine-XXXXXX")
trap 'rm -rf --one-file-system "$work"' EXIT
make_fresh_debian "$work/fresh" "$work/log"
git archive --prefix=vadelclip/ --output="$work/vadelclip.tar" HEAD

# run <command> <user>
# Each step returns its failure, because bash ignores "set -e" in a function that is called in a condition.
run() {
  local system=$work/system home=/root as=()
  rm -rf --one-file-system "$system"
  cp -a "$work/fresh" "$system" || return
  if [ "$2" = sudo ]; then
    in_system "$system" sh -ec 'apt-get update -qq; apt-get install -y -qq --no-install-recommends sudo
      useradd --create-home --shell /bin/bash builder; echo "builder ALL=(ALL) NOPASSWD: ALL" >/etc/sudoers.d/builder' || return
    home=/home/builder
    as=(setpriv --reuid=builder --regid=builder --init-groups)
  fi
  tar -xf "$work/vadelclip.tar" -C "$system$home" || return
  [ "$2" = root ] || in_system "$system" chown -R builder: "$home" || return
  # Nothing of this machine's environment, so that the command has to do all of its set-up.
  in_system "$system" "${as[@]}" env -i -C "$home/vadelclip" HOME="$home" PATH=/usr/sbin:/usr/bin:/sbin:/bin "scripts/$1"
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
