# Every floating-point operation is rounded separately.
#
# The containment test compares rounded values exactly. A compiler that contracts a*b+c into one operation (GCC does so by
# default if the target has it), or reorders operations, changes these values and with them the result. No target is
# built with -march=native: every x86-64 computes the same bits.
add_library(vadelclip_floating_point INTERFACE)
if(MSVC)
  # Visual Studio 2022 contracts nothing without /fp:contract. Earlier versions contract only with an /arch option that
  # has the operation, and we set none.
  target_compile_options(vadelclip_floating_point INTERFACE /fp:precise)
else()
  target_compile_options(vadelclip_floating_point INTERFACE -ffp-contract=off -fno-fast-math)
endif()
