# Message catalogues: locale/<language>/<domain>.po in the sources becomes
# locale/<language>/LC_MESSAGES/<domain>.mo next to the executables. The domain of Vadelclip is VD2D.
find_program(MSGFMT_EXECUTABLE msgfmt REQUIRED)

function(add_catalogue language)
  set(directory ${PROJECT_BINARY_DIR}/locale/${language}/LC_MESSAGES)
  foreach(domain IN ITEMS VD2D vadelwatch vadelshard)
    set(source ${PROJECT_SOURCE_DIR}/locale/${language}/${domain}.po)
    add_custom_command(
      OUTPUT ${directory}/${domain}.mo
      COMMAND ${CMAKE_COMMAND} -E make_directory ${directory}
      COMMAND ${MSGFMT_EXECUTABLE} --check --output-file=${directory}/${domain}.mo ${source}
      DEPENDS ${source}
      COMMENT "Compiling the message catalogue ${domain} of language ${language}")
  endforeach()
  add_custom_target(catalogue_${language} ALL 
    DEPENDS ${directory}/VD2D.mo ${directory}/vadelwatch.mo ${directory}/vadelshard.mo)
  # A build of one target has the catalogues too.
  add_dependencies(Vadelclip catalogue_${language})
  foreach(companion IN ITEMS Vadelwatch Vadelshard)
    if(TARGET ${companion})
      add_dependencies(${companion} catalogue_${language})
    endif()
  endforeach()
  set_property(GLOBAL APPEND PROPERTY VADELCLIP_CATALOGUES ${language})
endfunction()
