#!/usr/bin/env bash
# Builds the tool for 64-bit Windows on Linux and packs it with its catalogues, documents and examples:
# build/windows/Vadelclip-<version>-windows-x64.zip. Installs what is missing, and keeps the libraries for the next time.
# The same sources give the same bytes, wherever they are built.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/no-arguments.sh

scripts/setup.sh windows
scripts/windows-deps.sh
echo "Building ..."
scripts/build.sh windows -DVADELCLIP_WERROR=ON -DVADELCLIP_TESTS=OFF

# It has to run on any Windows as it is: nothing but the system's own libraries, no symbols.
executable=build/windows/Vadelclip.exe
libraries=$(x86_64-w64-mingw32-objdump -p "$executable" | sed -n 's/^[[:space:]]*DLL Name: //p' | LC_ALL=C sort | xargs)
if [ "$libraries" != "KERNEL32.dll msvcrt.dll" ]; then
  echo "$executable needs other libraries than KERNEL32.dll and msvcrt.dll: $libraries" >&2
  exit 1
fi
if ! x86_64-w64-mingw32-nm "$executable" 2>&1 | grep -q 'no symbols'; then
  echo "$executable is not stripped." >&2
  exit 1
fi

PYTHONDONTWRITEBYTECODE=1 python3 scripts/package-windows.py build/windows
