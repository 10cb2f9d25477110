get_filename_component(prefix "${CMAKE_CURRENT_LIST_DIR}/../../.." ABSOLUTE)

add_library(ProcessMessage::ProcessMessage STATIC IMPORTED)
set_target_properties(ProcessMessage::ProcessMessage PROPERTIES
  IMPORTED_LOCATION "${prefix}/lib/libExternalProcessMessage.a"
  INTERFACE_INCLUDE_DIRECTORIES "${prefix}/include")
