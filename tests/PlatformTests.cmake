# How unit tests are run, and which of them a platform leaves out.

if(WIN32)
  file(STRINGS ${CMAKE_CURRENT_LIST_DIR}/left-out-on-windows.txt leftOutLines REGEX "^[a-z]")
endif()

# Takes the sources out of a list that the platform cannot compile: its own ones are named *_posix* and *_win32*.
function(keep_sources_of_platform list)
  set(sources ${${list}})
  if(WIN32)
    list(FILTER sources EXCLUDE REGEX "_posix(_test)?\\.cpp$|child_process_support")
    foreach(line IN LISTS leftOutLines)
      if(line MATCHES "^file +([^ ]+)")
        list(REMOVE_ITEM sources ${CMAKE_CURRENT_SOURCE_DIR}/${CMAKE_MATCH_1})
      endif()
    endforeach()
  else()
    list(FILTER sources EXCLUDE REGEX "_win32(_test)?\\.cpp$")
  endif()
  set(${list} ${sources} PARENT_SCOPE)
endfunction()

# The same for the files of acceptance tests. Python leaves out single classes and tests by the same list.
function(keep_acceptance_tests_of_platform list)
  set(files ${${list}})
  if(WIN32)
    # Vadelwatch is not built there.
    list(FILTER files EXCLUDE REGEX "/watch/")
    foreach(line IN LISTS leftOutLines)
      if(line MATCHES "^acceptance +([^ .]+) ")
        list(REMOVE_ITEM files ${CMAKE_CURRENT_SOURCE_DIR}/${CMAKE_MATCH_1}.py)
      endif()
    endforeach()
  else()
    list(FILTER files EXCLUDE REGEX "_win32_test\\.py$")
  endif()
  set(${list} ${files} PARENT_SCOPE)
endfunction()

# A program of unit tests: add_unit_tests(<target> <source>...). For ctest each test stands on its own; where every start
# goes through an emulator, one part of them for each processor.
function(add_unit_tests target)
  set(sources ${ARGN})
  keep_sources_of_platform(sources)
  add_executable(${target} ${sources})
  target_link_libraries(${target} PRIVATE GTest::gmock GTest::gtest_main)
  if(VADELCLIP_SANITIZERS)
    target_compile_definitions(${target} PRIVATE VADELCLIP_SMALL_WORKLOAD)
  endif()
  # Most of a build are tests, and most of a test's time is the compiler's: what all include is read once, and only the
  # sources and the plain ways to the same result (test_support) are optimised in full. Under sanitizers GCC 12 takes all
  # memory there is when it goes on from precompiled headers.
  if(NOT (VADELCLIP_SANITIZERS AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU"))
    # Two programs are small and have the definitions of unit_tests, so that its precompiled headers will do for them.
    if(target MATCHES "^(processmessage|memory)_tests$" AND NOT WIN32)
      target_precompile_headers(${target} REUSE_FROM unit_tests)
    else()
      target_precompile_headers(${target} PRIVATE <filesystem> <gmock/gmock.h> <gtest/gtest.h>)
    endif()
  endif()
  if(NOT MSVC)
    # GCC 12 takes strings of its own library for out of bounds when their header is precompiled. Fixtures in anonymous
    # namespaces look like those of a header where sources are compiled together.
    target_compile_options(${target} PRIVATE $<IF:$<CONFIG:Release>,-O1,-O0>
      $<$<CXX_COMPILER_ID:GNU>:-Wno-array-bounds;-Wno-stringop-overflow;-Wno-subobject-linkage>)
  endif()
  if(NOT WIN32)
    gtest_discover_tests(${target} TEST_PREFIX "unit." DISCOVERY_TIMEOUT 60 PROPERTIES LABELS unit)
    return()
  endif()
  set(filter "*-")
  foreach(line IN LISTS leftOutLines)
    if(line MATCHES "^unit +([^ ]+)")
      string(APPEND filter ":${CMAKE_MATCH_1}")
    endif()
  endforeach()
  foreach(part IN ITEMS 0 1)
    add_test(NAME unit.${target}.${part} COMMAND ${target} --gtest_brief=1)
    set_tests_properties(unit.${target}.${part} PROPERTIES
      ENVIRONMENT "GTEST_FILTER=${filter};GTEST_TOTAL_SHARDS=2;GTEST_SHARD_INDEX=${part}")
  endforeach()
endfunction()
