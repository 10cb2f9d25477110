#!/usr/bin/env bash
# Builds the tools for ARM64, as in the Debian package, and runs the unit tests and the acceptance tests under QEMU.
# tests/left-out-on-arm64.txt lists the tests that are left out. Installs what is missing, and keeps the libraries for the next
# time.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh arm64
scripts/arm64-deps.sh
echo "Building ..."
unset CPPFLAGS CFLAGS CXXFLAGS LDFLAGS
cmake --preset arm64 -DVADELCLIP_TESTS=ON >/dev/null
cmake --build --preset arm64 -- --quiet

# The libraries are shared, so the executables contain our code and templates that were compiled with our options.
echo "Searching for fused multiply-adds ..."
for program in Vadelclip Vadelwatch; do
  aarch64-linux-gnu-objdump --disassemble --demangle --no-show-raw-insn "build/arm64/$program" >build/arm64/disassembly.txt
  awk -v program="$program" '/>:$/ { place = $0; sub(/^[0-9a-f]+ /, "", place) }
    $2 ~ /^(fn?m(add|sub)|fml[as]l?2?|fcmla)$/ { print program ", " place, $0; found = 1 }
    END { exit found }' build/arm64/disassembly.txt >&2 || {
    echo "build/arm64/$program joins products and sums: see cmake/FloatingPoint.cmake." >&2
    exit 1
  }
done

ctest --preset arm64 --progress
