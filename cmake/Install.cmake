# Where an installation puts things:
#
#     lib/vadelclip/      Vadelclip, Vadelwatch and locale/: together, because each looks in the directory of its
#                         own real path, both for their catalogues and Vadelwatch for the tool
#     bin/                relative links to the two
#     share/              man pages, completion, documents, examples
include(GNUInstallDirs)

set(programDirectory lib/vadelclip)
set(documents ${CMAKE_INSTALL_DATADIR}/doc/vadelclip)

# The list of an installation is of lines that CMake joins and parts by semicolons: the removal could not read it.
install(CODE [[
  if(CMAKE_INSTALL_PREFIX MATCHES "[;\n]")
    message(FATAL_ERROR "A prefix with a semicolon or a line feed is not supported: ${CMAKE_INSTALL_PREFIX}")
  endif()]])

# Whoever installs for all with a mask of permissions of their own means all. CMake gives files the permissions it is
# told to, directories only those that the mask leaves.
get_property(catalogues GLOBAL PROPERTY VADELCLIP_CATALOGUES)
set(directories ${CMAKE_INSTALL_BINDIR} ${CMAKE_INSTALL_MANDIR}/man1 ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
  ${documents}/docs/images ${documents}/examples/merewether/nodes ${documents}/examples/coast/nodes)
foreach(language IN LISTS catalogues)
  list(APPEND directories ${programDirectory}/locale/${language}/LC_MESSAGES)
endforeach()
if(VADELCLIP_PACKAGE)
  list(APPEND directories ${CMAKE_INSTALL_DATADIR}/lintian/overrides)
endif()
list(FILTER directories EXCLUDE REGEX ^/)
install(CODE "set(directories ${directories})")
install(CODE [[
  execute_process(ERROR_QUIET COMMAND sh -c [=[umask 022; mkdir -p -- "$1" && cd -- "$1" && shift && mkdir -p -- "$@"]=]
    sh "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}" ${directories})]])

# install_compressed(file directory name): the same bytes at every time and place, hence no name and time in them.
find_program(GZIP_EXECUTABLE gzip REQUIRED)
function(install_compressed file directory name)
  set(compressed ${PROJECT_BINARY_DIR}/compressed/${name}.gz)
  add_custom_command(
    OUTPUT ${compressed}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/compressed
    COMMAND ${GZIP_EXECUTABLE} -9nc ${file} > ${compressed}
    DEPENDS ${file}
    VERBATIM)
  add_custom_target(compressed_${name} ALL DEPENDS ${compressed})
  install(FILES ${compressed} DESTINATION ${directory})
endfunction()

# A link into the program directory that can be moved together with it.
function(install_link name)
  file(RELATIVE_PATH target /${CMAKE_INSTALL_BINDIR} /${programDirectory}/${name})
  file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/links)
  file(CREATE_LINK ${target} ${PROJECT_BINARY_DIR}/links/${name} SYMBOLIC)
  install(FILES ${PROJECT_BINARY_DIR}/links/${name} DESTINATION ${CMAKE_INSTALL_BINDIR})
endfunction()

# The date of the man pages is that of the sources, as in all that is handed out; of today where they do not tell it.
execute_process(COMMAND ${PROJECT_SOURCE_DIR}/scripts/source-date.sh OUTPUT_VARIABLE sourceDate
  OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
if(sourceDate)
  set(ENV{SOURCE_DATE_EPOCH} ${sourceDate})
endif()
string(TIMESTAMP MANUAL_DATE %Y-%m-%d UTC)

foreach(name Vadelclip Vadelwatch)
  install(TARGETS ${name} RUNTIME DESTINATION ${programDirectory})
  install_link(${name})
  configure_file(docs/man/${name}.1.in ${PROJECT_BINARY_DIR}/man/${name}.1 @ONLY)
  install_compressed(${PROJECT_BINARY_DIR}/man/${name}.1 ${CMAKE_INSTALL_MANDIR}/man1 ${name}.1)
endforeach()

foreach(language IN LISTS catalogues)
  install(FILES ${PROJECT_BINARY_DIR}/locale/${language}/LC_MESSAGES/VD2D.mo
      ${PROJECT_BINARY_DIR}/locale/${language}/LC_MESSAGES/vadelwatch.mo
    DESTINATION ${programDirectory}/locale/${language}/LC_MESSAGES)
endforeach()

# bash loads a completion by the name of the command.
foreach(name Vadelclip Vadelwatch)
  string(TOLOWER completions/${name}.bash completion)
  install(FILES ${completion} DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME ${name})
endforeach()

# Documents keep their places in the tree, so that links from one to the other lead somewhere.
install(FILES README.md packaging/copyright DESTINATION ${documents})
install_compressed(${PROJECT_SOURCE_DIR}/CHANGELOG.md ${documents} changelog)
file(GLOB pages CONFIGURE_DEPENDS docs/*.md)
install(FILES ${pages} DESTINATION ${documents}/docs)
file(GLOB images CONFIGURE_DEPENDS docs/images/*.png)
install(FILES ${images} DESTINATION ${documents}/docs/images)

# By name and not as a whole: a run in the tree leaves its output directory in examples/.
install(FILES examples/README.md DESTINATION ${documents}/examples)
foreach(set merewether coast)
  file(GLOB boundaries CONFIGURE_DEPENDS examples/${set}/*.xml)
  install(FILES ${boundaries} DESTINATION ${documents}/examples/${set})
  file(GLOB nodeFiles CONFIGURE_DEPENDS examples/${set}/nodes/*)
  install(FILES ${nodeFiles} DESTINATION ${documents}/examples/${set}/nodes)
endforeach()

# Beside the list of the files, which leaves out DESTDIR: where they are.
install(CODE [[
  set(list install_manifest)
  if(CMAKE_INSTALL_COMPONENT)
    string(APPEND list _${CMAKE_INSTALL_COMPONENT})
  endif()]])
install(CODE "file(WRITE \"${PROJECT_BINARY_DIR}/\${list}.txt.destdir\" \"\$ENV{DESTDIR}\")")

add_custom_target(uninstall
  COMMAND ${CMAKE_COMMAND} -D manifest=${PROJECT_BINARY_DIR}/install_manifest.txt
    -P ${PROJECT_SOURCE_DIR}/cmake/Uninstall.cmake
  COMMENT "Removing the files of the last installation from this build directory")
