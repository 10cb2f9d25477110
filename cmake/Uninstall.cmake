# Removes the files that the last `cmake --install` of a build directory wrote, and the directories of Vadelclip's own
# that are empty then. Run by the target "uninstall".
#
# A prefix may hold what CMake takes for a pattern or for the end of a list's entry. So nothing here is a list, and a
# directory goes by rmdir, which refuses one that holds anything.
if(NOT EXISTS ${manifest})
  message(FATAL_ERROR "Nothing was installed from this build directory: there is no ${manifest}")
endif()

# From a file's directory upwards, as far as a directory of our own, until one is left.
function(remove_empty_directories directory)
  while(directory MATCHES "/(lib|share/doc)/vadelclip(/|$)")
    execute_process(COMMAND rmdir -- "$ENV{DESTDIR}${directory}" OUTPUT_QUIET ERROR_QUIET)
    if(EXISTS "$ENV{DESTDIR}${directory}")
      return()
    endif()
    get_filename_component(directory "${directory}" DIRECTORY)
  endwhile()
endfunction()

function(remove_installed file)
  file(REMOVE "$ENV{DESTDIR}${file}")
  get_filename_component(directory "${file}" DIRECTORY)
  remove_empty_directories("${directory}")
endfunction()

# The list has a line for each file, and a line feed for each semicolon too, which are all in the prefix: what stands in
# front of the first file's name. Taken line by line, a prefix that ends in one would make /bin/Vadelclip a file of ours.
file(READ ${manifest} left)
string(FIND "${left}" "/lib/vadelclip/Vadelclip\n" end)
if(end LESS 0)
  message(FATAL_ERROR "${manifest} is not the list of an installation of Vadelclip")
endif()
string(SUBSTRING "${left}" 0 ${end} writtenPrefix)
string(REPLACE "\n" ";" prefix "${writtenPrefix}")
string(REPLACE "${writtenPrefix}/" "${prefix}/" left "${left}\n")
while(NOT left STREQUAL "")
  string(FIND "${left}" "\n" end)
  string(SUBSTRING "${left}" 0 ${end} file)
  math(EXPR next "${end} + 1")
  string(SUBSTRING "${left}" ${next} -1 left)
  if(NOT file STREQUAL "")
    remove_installed("${file}")
  endif()
endwhile()
file(REMOVE ${manifest})
