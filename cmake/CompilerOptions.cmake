# Options of every target of the project: floating point, warnings, sanitizers, library versions.
add_library(vadelclip_options INTERFACE)
target_link_libraries(vadelclip_options INTERFACE vadelclip_floating_point)

# The version-3 rules of Boost.Filesystem are relied upon: filename() is "." behind a trailing separator, and an
# absolute right side does not replace the left one when paths are joined.
# BOOST_LOCALE_HIDE_AUTO_PTR takes a deprecated class out of Boost.Locale's headers.
target_compile_definitions(vadelclip_options INTERFACE BOOST_FILESYSTEM_VERSION=3 BOOST_LOCALE_HIDE_AUTO_PTR)

if(MSVC)
  target_compile_options(vadelclip_options INTERFACE /W4 $<$<BOOL:${VADELCLIP_WERROR}>:/WX>)
else()
  target_compile_options(vadelclip_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor -Woverloaded-virtual
    -Wold-style-cast -Wcast-qual -Wcast-align -Wundef -Wextra-semi
    # Known to GCC only: the same condition or branch twice, a cast to the type that it is already.
    $<$<CXX_COMPILER_ID:GNU>:-Wduplicated-cond -Wduplicated-branches -Wuseless-cast>
    $<$<BOOL:${VADELCLIP_WERROR}>:-Werror>)
endif()

if(VADELCLIP_SANITIZERS)
  target_compile_options(vadelclip_options INTERFACE
    -fsanitize=${VADELCLIP_SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(vadelclip_options INTERFACE -fsanitize=${VADELCLIP_SANITIZERS})
endif()
