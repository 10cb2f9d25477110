# Removes the files that the last `cmake --install` of a build directory wrote, and the directories of Vadelclip's own
# that are empty then. Run by the target "uninstall".
if(NOT EXISTS ${manifest})
  message(FATAL_ERROR "Nothing was installed from this build directory: there is no ${manifest}")
endif()

file(STRINGS ${manifest} files ENCODING UTF-8)
set(directories)
foreach(file IN LISTS files)
  file(REMOVE "$ENV{DESTDIR}${file}")
  # From the file upwards, as far as a directory of our own.
  get_filename_component(directory "${file}" DIRECTORY)
  while(directory MATCHES "/(lib|share/doc)/vadelclip(/|$)")
    list(APPEND directories "${directory}")
    get_filename_component(directory "${directory}" DIRECTORY)
  endwhile()
endforeach()

# The longest first, so that each is looked at behind those in it.
list(REMOVE_DUPLICATES directories)
list(SORT directories ORDER DESCENDING)
foreach(directory IN LISTS directories)
  file(GLOB left LIST_DIRECTORIES true "$ENV{DESTDIR}${directory}/*")
  if(NOT left)
    file(REMOVE_RECURSE "$ENV{DESTDIR}${directory}")
  endif()
endforeach()
file(REMOVE ${manifest})
