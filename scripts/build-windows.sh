#!/usr/bin/env bash
# Builds the tool for 64-bit Windows on Linux and packs it with its catalogues, documents and examples:
# build/windows/Vadelclip-<version>-windows-x64.zip. Installs what is missing, and keeps the libraries for the next time.
# The same sources make the same bytes in every directory.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh windows
scripts/windows-deps.sh
echo "Building ..."
cmake --preset windows >/dev/null
cmake --build --preset windows -- --quiet

# The executable runs on any Windows: it needs only the system's own libraries.
libraries=$(x86_64-w64-mingw32-objdump -p build/windows/Vadelclip.exe | sed -n 's/.*DLL Name: //p' | sort | xargs)
if [ "$libraries" != "KERNEL32.dll msvcrt.dll" ]; then
  echo "build/windows/Vadelclip.exe needs other libraries than KERNEL32.dll and msvcrt.dll: $libraries" >&2
  exit 1
fi

python3 scripts/package-windows.py build/windows
