# Places of an installation:
#
#     lib/vadelclip/      Vadelclip, its companions, scripts and locale/. They stay together: the executables look for their
#                         catalogues, the companions for Vadelclip, and the scripts for Vadelshard, in the directory of
#                         their real path.
#     bin/                relative links to the executables and scripts
#     share/              man pages, completion, documents, examples
include(GNUInstallDirs)

set(programDirectory lib/vadelclip)
set(documents ${CMAKE_INSTALL_DATADIR}/doc/vadelclip)

# install_compressed(file directory name [component]). gzip -n stores no name and no time, so the bytes are always the same.
find_program(GZIP_EXECUTABLE gzip REQUIRED)
function(install_compressed file directory name)
  set(component Unspecified)
  if(ARGC GREATER 3)
    set(component ${ARGV3})
  endif()
  set(compressed ${PROJECT_BINARY_DIR}/compressed/${component}/${name}.gz)
  add_custom_command(
    OUTPUT ${compressed}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/compressed/${component}
    COMMAND ${GZIP_EXECUTABLE} -9nc ${file} > ${compressed}
    DEPENDS ${file}
    VERBATIM)
  add_custom_target(compressed_${component}_${name} ALL DEPENDS ${compressed})
  install(FILES ${compressed} DESTINATION ${directory} COMPONENT ${component})
endfunction()

# The date of the man pages. It is that of SOURCE_DATE_EPOCH if scripts/package.sh has set it, otherwise today.
string(TIMESTAMP MANUAL_DATE %Y-%m-%d UTC)

install(FILES src/shard/engine_job.bash DESTINATION ${programDirectory})
foreach(name Vadelclip Vadelwatch Vadelshard vadelclip-parallel vadelclip-slurm)
  if(TARGET ${name})
    install(TARGETS ${name} RUNTIME DESTINATION ${programDirectory})
  else()
    install(PROGRAMS src/shard/${name} DESTINATION ${programDirectory})
  endif()
  file(RELATIVE_PATH target /${CMAKE_INSTALL_BINDIR} /${programDirectory}/${name})
  file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/links)
  file(CREATE_LINK ${target} ${PROJECT_BINARY_DIR}/links/${name} SYMBOLIC)
  install(FILES ${PROJECT_BINARY_DIR}/links/${name} DESTINATION ${CMAKE_INSTALL_BINDIR})
  configure_file(docs/man/${name}.1.in ${PROJECT_BINARY_DIR}/man/${name}.1 @ONLY)
  install_compressed(${PROJECT_BINARY_DIR}/man/${name}.1 ${CMAKE_INSTALL_MANDIR}/man1 ${name}.1)
  # bash loads a completion by the name of the command.
  string(TOLOWER completions/${name}.bash completion)
  string(REPLACE -slurm -parallel completion ${completion})
  install(FILES ${completion} DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME ${name})
endforeach()

get_property(catalogues GLOBAL PROPERTY VADELCLIP_CATALOGUES)
foreach(language IN LISTS catalogues)
  set(directory locale/${language}/LC_MESSAGES)
  foreach(domain VD2D vadelwatch vadelshard)
    install(FILES ${PROJECT_BINARY_DIR}/${directory}/${domain}.mo DESTINATION ${programDirectory}/${directory})
  endforeach()
endforeach()

# Documents keep their places in the source tree, so that the links between them work.
install(FILES README.md packaging/copyright DESTINATION ${documents})
install_compressed(${PROJECT_SOURCE_DIR}/CHANGELOG.md ${documents} changelog)
install(DIRECTORY docs DESTINATION ${documents} FILES_MATCHING PATTERN *.md PATTERN *.json PATTERN *.png PATTERN man EXCLUDE)

# Examples file by file: a run in the source tree leaves its output directory in examples/.
install(FILES examples/README.md DESTINATION ${documents}/examples)
foreach(set merewether coast)
  file(GLOB boundaries CONFIGURE_DEPENDS examples/${set}/*.xml)
  install(FILES ${boundaries} DESTINATION ${documents}/examples/${set})
  install(DIRECTORY examples/${set}/nodes DESTINATION ${documents}/examples/${set})
endforeach()

# The driver is a separate component, and in Debian a separate package: the tool does not need GDAL. GDAL searches this directory
# below /usr; GDAL_DRIVER_PATH names any other.
if(TARGET ogr_VadeDGM)
  install(TARGETS ogr_VadeDGM LIBRARY DESTINATION lib/${CMAKE_LIBRARY_ARCHITECTURE}/gdalplugins COMPONENT gdal)
endif()
