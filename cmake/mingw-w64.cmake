# Tool chain for 64-bit Windows on Linux: mingw-w64 with POSIX threads. scripts/windows-deps.sh builds the libraries with the
# same flags. wine runs the executables.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(CMAKE_CROSSCOMPILING_EMULATOR wine)

# Windows 7 is the first system with all functions that Boost.Filesystem and we call.
# No contraction of floating point, as in FloatingPoint.cmake; here for the libraries as well.
# The prefix map keeps the build directory out of the binaries: the same sources make the same bytes everywhere.
get_filename_component(_root "${CMAKE_CURRENT_LIST_DIR}/.." ABSOLUTE)
set(_flags "-D_WIN32_WINNT=0x0601 -ffp-contract=off \"-ffile-prefix-map=${_root}=.\"")
set(CMAKE_C_FLAGS_INIT "${_flags}")
set(CMAKE_CXX_FLAGS_INIT "${_flags}")

# A single file: with the run-time libraries of the compiler, without time stamp and symbols.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -s -Wl,--no-insert-timestamp")

# Programs are those of this machine. Libraries, headers and packages are not.
set(CMAKE_FIND_ROOT_PATH "${_root}/build/windows-deps" /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Boost's package files describe the libraries of this machine.
set(Boost_NO_BOOST_CMAKE ON)
set(Boost_USE_STATIC_LIBS ON)
