# How unit tests are built and run, and which tests a platform leaves out.

if(WIN32)
  set(leftOutPlatform windows)
elseif(CMAKE_CROSSCOMPILING)
  set(leftOutPlatform arm64)
endif()
if(leftOutPlatform)
  file(STRINGS ${CMAKE_CURRENT_LIST_DIR}/left-out-on-${leftOutPlatform}.txt leftOutLines REGEX "^[a-z]")
endif()

# Removes the sources from a list that the platform cannot compile. The names of a platform's own sources have _posix or
# _win32 in them.
function(keep_sources_of_platform list)
  set(sources ${${list}})
  if(WIN32)
    list(FILTER sources EXCLUDE REGEX "_posix(_test)?\\.cpp$|child_process_support")
  else()
    list(FILTER sources EXCLUDE REGEX "_win32(_test)?\\.cpp$")
  endif()
  foreach(line IN LISTS leftOutLines)
    if(line MATCHES "^file +([^ ]+)")
      list(REMOVE_ITEM sources ${CMAKE_CURRENT_SOURCE_DIR}/${CMAKE_MATCH_1})
    endif()
  endforeach()
  set(${list} ${sources} PARENT_SCOPE)
endfunction()

# The same for files of acceptance tests. tests/support/acceptance.py leaves out single classes and tests by the same list.
function(keep_acceptance_tests_of_platform list)
  set(files ${${list}})
  if(CMAKE_CROSSCOMPILING)
    # The companions are not built for Windows. On ARM64 they cannot start the tool, because QEMU starts only the first
    # program.
    list(FILTER files EXCLUDE REGEX "/(watch|shard)/")
  endif()
  if(NOT WIN32)
    list(FILTER files EXCLUDE REGEX "_win32_test\\.py$")
  endif()
  foreach(line IN LISTS leftOutLines)
    if(line MATCHES "^acceptance +([^ .]+) ")
      list(REMOVE_ITEM files ${CMAKE_CURRENT_SOURCE_DIR}/${CMAKE_MATCH_1}.py)
    endif()
  endforeach()
  set(${list} ${files} PARENT_SCOPE)
endfunction()

# add_unit_tests(<target> <source>...): a program of unit tests. Each unit test is a test of CTest, except where an emulator
# makes every start slow: there CTest runs the program twice, each time with half of the tests.
function(add_unit_tests target)
  set(sources ${ARGN})
  keep_sources_of_platform(sources)
  add_executable(${target} ${sources})
  target_link_libraries(${target} PRIVATE GTest::gmock GTest::gtest_main)
  # Every test includes these headers.
  target_precompile_headers(${target} PRIVATE <gmock/gmock.h> <gtest/gtest.h>)
  if(VADELCLIP_SANITIZERS OR CMAKE_CROSSCOMPILING)
    target_compile_definitions(${target} PRIVATE VADELCLIP_SMALL_WORKLOAD)
  endif()
  if(NOT CMAKE_CROSSCOMPILING)
    # The slowest tests start first, so that none of them runs alone at the end.
    set(slow "NumberText.agreesOn*RandomTexts:CellGridsMemory.*")
    gtest_discover_tests(${target} TEST_PREFIX "unit." TEST_FILTER "-${slow}" DISCOVERY_TIMEOUT 60
      PROPERTIES LABELS unit)
    gtest_discover_tests(${target} TEST_PREFIX "unit." TEST_FILTER "${slow}" DISCOVERY_TIMEOUT 60
      TEST_LIST slow_${target} PROPERTIES LABELS slow COST 3)
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
    # Under wine, a program that crashes may end with status 0.
    set_tests_properties(unit.${target}.${part} PROPERTIES LABELS unit
      PASS_REGULAR_EXPRESSION "  PASSED  " FAIL_REGULAR_EXPRESSION "  FAILED  "
      ENVIRONMENT "GTEST_FILTER=${filter};GTEST_TOTAL_SHARDS=2;GTEST_SHARD_INDEX=${part}")
  endforeach()
endfunction()
