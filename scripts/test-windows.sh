#!/usr/bin/env bash
# Builds the tool for 64-bit Windows as scripts/build-windows.sh does, and runs the unit tests and the acceptance tests under
# wine, without a display. tests/left-out-on-windows.txt lists the tests that are left out.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/build-windows.sh
echo "Building the tests ..."
cmake --preset windows -DVADELCLIP_TESTS=ON >/dev/null
cmake --build --preset windows -- --quiet

# A separate Windows for the tests. wine's debugger would turn a crash into a long text and the exit status 0.
export WINEPREFIX=$PWD/build/wine WINEDEBUG=-all WINEDLLOVERRIDES="winedbg.exe=d"
# Makes 1252 the ANSI code page.
export LC_ALL=C.UTF-8
server=/usr/lib/wine/wineserver
end_server() { "$server" -k >/dev/null 2>&1 || true; }
trap end_server EXIT
end_server
echo "Starting wine ..."
wine cmd /c exit >/dev/null 2>&1
# The server of this program ends with it. The next one continues to run, because each start of a server takes half a
# second.
"$server" -w
"$server" -p
# The first program starts the services of this Windows, which keep its output open: ctest would wait for them.
wine cmd /c exit >/dev/null 2>&1

ctest --preset windows --progress
