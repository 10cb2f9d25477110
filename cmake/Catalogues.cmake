# Message catalogues: locale/<language>/VD2D.po in the sources becomes
# locale/<language>/LC_MESSAGES/VD2D.mo beside the executable.
find_program(MSGFMT_EXECUTABLE msgfmt REQUIRED)

function(add_catalogue language)
  set(source ${PROJECT_SOURCE_DIR}/locale/${language}/VD2D.po)
  set(directory ${PROJECT_BINARY_DIR}/locale/${language}/LC_MESSAGES)
  add_custom_command(
    OUTPUT ${directory}/VD2D.mo
    COMMAND ${CMAKE_COMMAND} -E make_directory ${directory}
    COMMAND ${MSGFMT_EXECUTABLE} --check --output-file=${directory}/VD2D.mo ${source}
    DEPENDS ${source}
    COMMENT "Compiling the message catalogue of language ${language}")
  add_custom_target(catalogue_${language} ALL DEPENDS ${directory}/VD2D.mo)
  # Whoever builds the tool alone gets its catalogues too.
  add_dependencies(Vadelclip catalogue_${language})
  set_property(GLOBAL APPEND PROPERTY VADELCLIP_CATALOGUES ${language})
endfunction()
