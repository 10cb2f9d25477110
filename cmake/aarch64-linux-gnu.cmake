# Tool chain for ARM64 (64-bit ARM, Debian's arm64) on Linux of another architecture. scripts/arm64-deps.sh unpacks the
# libraries.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)

set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)

get_filename_component(_root "${CMAKE_CURRENT_LIST_DIR}/../build/arm64-deps" REALPATH)
set(CMAKE_SYSROOT "${_root}")
# It needs QEMU_LD_PREFIX, the directory of the ARM64 libraries. The test preset sets it.
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64-static)
set(ENV{PKG_CONFIG_SYSROOT_DIR} "${_root}")
set(ENV{PKG_CONFIG_LIBDIR} "${_root}/usr/lib/aarch64-linux-gnu/pkgconfig:${_root}/usr/share/pkgconfig")

# Programs are those of this machine. Libraries, headers and packages are not.
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
