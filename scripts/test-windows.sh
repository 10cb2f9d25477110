#!/usr/bin/env bash
# Builds the tool for 64-bit Windows as scripts/build-windows.sh does, and runs the unit tests and the acceptance tests
# that mean something there under wine, without a display. tests/left-out-on-windows.txt has those that are left out.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/no-arguments.sh

scripts/build-windows.sh
scripts/windows-deps.sh test
echo "Building the tests ..."
scripts/build.sh windows -DVADELCLIP_WERROR=ON -DVADELCLIP_TESTS=ON

# A Windows of its own. The debugger would turn a crash into a hundred lines and the exit status 0.
export WINEPREFIX=$PWD/build/wine WINEDEBUG=-all WINEDLLOVERRIDES="winedbg.exe=d"
# Makes 1252 the ANSI code page.
export LC_ALL=C.UTF-8
server=/usr/lib/wine/wineserver
end_server() { "$server" -k >/dev/null 2>&1 || true; }
trap end_server EXIT
end_server
echo "Starting wine ..."
wine cmd /c exit >/dev/null 2>&1
# The server that this start brought ends by itself; the next one stays until it is ended: a start costs half a second
# otherwise.
"$server" -w
"$server" -p
# The first program brings the services of this Windows, which keep its output open: ctest would wait for them.
wine cmd /c exit >/dev/null 2>&1

ctest --preset windows --progress
