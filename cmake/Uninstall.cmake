# Removes the files that the last `cmake --install` of a build directory wrote, and the directories of Vadelclip's own
# that are empty then. Run by the target "uninstall".
#
# A prefix may hold what CMake takes for a pattern or for a bracket around a list's entries. So nothing here is a list,
# and a file goes by rm, which tells whether it is gone, a directory by rmdir, which refuses one that holds anything.
cmake_minimum_required(VERSION 3.25)

if(NOT EXISTS ${manifest})
  message(FATAL_ERROR "Nothing was installed from this build directory: there is no ${manifest}")
endif()

# Without the directory that the installation was staged in, the list names the files of another one.
set(destdir "")
if(EXISTS ${manifest}.destdir)
  file(READ ${manifest}.destdir destdir)
endif()
if(NOT "$ENV{DESTDIR}" STREQUAL destdir)
  message(FATAL_ERROR "The installation was made with DESTDIR=\"${destdir}\", and this is DESTDIR=\"$ENV{DESTDIR}\"")
endif()

# From a file's directory upwards, as far as a directory of our own, until one is left.
function(remove_empty_directories directory)
  while(directory MATCHES "/(lib|share/doc)/vadelclip(/|$)")
    execute_process(COMMAND rmdir -- "${destdir}${directory}" OUTPUT_QUIET ERROR_QUIET)
    if(EXISTS "${destdir}${directory}")
      return()
    endif()
    get_filename_component(directory "${directory}" DIRECTORY)
  endwhile()
endfunction()

function(remove_installed file)
  execute_process(COMMAND rm -f -- "${destdir}${file}" RESULT_VARIABLE status ERROR_VARIABLE reason)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${destdir}${file} is left, and the list of what to remove is kept: ${reason}")
  endif()
  get_filename_component(directory "${file}" DIRECTORY)
  remove_empty_directories("${directory}")
endfunction()

# A line for each file.
file(READ ${manifest} left)
string(APPEND left "\n")
while(NOT left STREQUAL "")
  string(FIND "${left}" "\n" end)
  string(SUBSTRING "${left}" 0 ${end} file)
  math(EXPR next "${end} + 1")
  string(SUBSTRING "${left}" ${next} -1 left)
  if(NOT file STREQUAL "")
    remove_installed("${file}")
  endif()
endwhile()
file(REMOVE ${manifest} ${manifest}.destdir)
