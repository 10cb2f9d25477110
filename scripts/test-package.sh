#!/usr/bin/env bash
# Tests the Debian packages that scripts/package.sh has built. lintian checks their form; piuparts installs both into a fresh
# minimal Debian, runs packaging/piuparts/ there, removes them and looks for files that are left. Needs root or sudo, and the
# network.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh check
lintian --allow-root --fail-on error,warning build/package/*.deb
as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo)
log=build/package/piuparts.log
"${as_root[@]}" piuparts --distribution bookworm --no-upgrade-test --scriptsdir packaging/piuparts \
  build/package/*.deb >"$log" 2>&1 || { tail -n 40 "$log"; exit 1; }
