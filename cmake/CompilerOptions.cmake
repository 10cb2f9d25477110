# Options of every target of the project: floating point, warnings, sanitizers, library versions.
add_library(vadelclip_options INTERFACE)
target_link_libraries(vadelclip_options INTERFACE vadelclip_floating_point)

# The version-3 rules of Boost.Filesystem are relied upon: filename() is "." behind a trailing separator, and an
# absolute right side does not replace the left one when paths are joined.
# BOOST_LOCALE_HIDE_AUTO_PTR takes a deprecated class out of Boost.Locale's headers.
target_compile_definitions(vadelclip_options INTERFACE BOOST_FILESYSTEM_VERSION=3 BOOST_LOCALE_HIDE_AUTO_PTR)

if(WIN32)
  # Of the system's header no more than is used, and none of its macros in the place of std::min and std::max.
  target_compile_definitions(vadelclip_options INTERFACE WIN32_LEAN_AND_MEAN NOMINMAX=1)
endif()

if(MSVC)
  # The sources are UTF-8; __cplusplus has its true value; the C library's own names are used.
  target_compile_options(vadelclip_options INTERFACE
    /utf-8 /Zc:__cplusplus /permissive- /EHsc /W4 $<$<BOOL:${VADELCLIP_WERROR}>:/WX>)
  target_compile_definitions(vadelclip_options INTERFACE _CRT_SECURE_NO_WARNINGS)
else()
  target_compile_options(vadelclip_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor -Woverloaded-virtual
    -Wold-style-cast -Wcast-qual -Wcast-align -Wundef -Wextra-semi
    $<$<BOOL:${VADELCLIP_WERROR}>:-Werror>)
endif()

if(VADELCLIP_SANITIZERS)
  target_compile_options(vadelclip_options INTERFACE
    -fsanitize=${VADELCLIP_SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(vadelclip_options INTERFACE -fsanitize=${VADELCLIP_SANITIZERS})
endif()
