# Tool chain for 64-bit Windows on Linux: mingw-w64 with POSIX threads; what it builds runs under wine.
#
# scripts/windows-deps.sh builds the libraries with these same flags.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(CMAKE_CROSSCOMPILING_EMULATOR wine)

# Windows 7 is the first system whose 64-bit programs all have the functions that Boost.Filesystem and we call.
# No contraction of floating point: see FloatingPoint.cmake; here, so that it holds for the libraries as well.
# The prefix map keeps the place of the build out of the binaries: the same sources give the same bytes anywhere.
get_filename_component(_root "${CMAKE_CURRENT_LIST_DIR}/.." ABSOLUTE)
set(_flags "-D_WIN32_WINNT=0x0601 -ffp-contract=off \"-ffile-prefix-map=${_root}=.\"")
set(CMAKE_C_FLAGS_INIT "${_flags}")
set(CMAKE_CXX_FLAGS_INIT "${_flags}")

# One file without companions: the run-time libraries of the compiler are in it, no time stamp, no symbols.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -s -Wl,--no-insert-timestamp")

# Programs come from this machine; libraries, headers and packages never do.
set(CMAKE_FIND_ROOT_PATH "${_root}/build/windows-deps" /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Boost's own package files describe the libraries of this machine.
set(Boost_NO_BOOST_CMAKE ON)
set(Boost_USE_STATIC_LIBS ON)
