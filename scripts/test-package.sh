#!/usr/bin/env bash
# Tests the Debian package that scripts/package.sh has built. lintian checks its form; piuparts installs it into a fresh
# minimal Debian, runs packaging/piuparts/ there, removes it and looks for files that are left. Needs root or sudo, and the
# network.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh check
lintian --allow-root --fail-on error,warning build/package/vadelclip_*.deb
as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo)
log=build/package/piuparts.log
"${as_root[@]}" piuparts --distribution bookworm --no-upgrade-test --scriptsdir packaging/piuparts \
  build/package/vadelclip_*.deb >"$log" 2>&1 || { tail -n 40 "$log"; exit 1; }
