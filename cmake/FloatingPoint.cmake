# Every floating-point operation is rounded on its own.
#
# Which point lies in a polygon is decided by exact comparisons with rounded values. A compiler that contracts a*b+c
# into one operation (as GCC does by default where the target has it), or reorders operations, changes those values and
# with them the result. No target is built for one machine only (-march=native): every x86-64 gives the same bits.
add_library(vadelclip_floating_point INTERFACE)
if(MSVC)
  # Since Visual Studio 2022 this contracts nothing unless /fp:contract is given too; earlier ones contract where the
  # target has the operation, which takes an /arch that is given nowhere.
  target_compile_options(vadelclip_floating_point INTERFACE /fp:precise)
else()
  target_compile_options(vadelclip_floating_point INTERFACE -ffp-contract=off -fno-fast-math)
endif()
