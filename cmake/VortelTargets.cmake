# One function per kind of target. Files are always listed by name.

# Half of a file's compile time is the standard library's headers (in a test also GoogleTest's). They are parsed once
# for the libraries and once for the tests: programs are compiled as position-independent executables, so they cannot
# take the libraries' header.
set(VORTEL_COMMON_HEADERS <algorithm> <array> <atomic> <chrono> <cmath> <cstdio> <functional> <map> <memory> <mutex>
  <span> <string> <string_view> <unordered_map> <vector>)
if(VORTEL_PRECOMPILE)
  add_library(vortel-headers OBJECT "${CMAKE_SOURCE_DIR}/cmake/Empty.cpp")
  target_link_libraries(vortel-headers PRIVATE vortel-settings)
  target_precompile_headers(vortel-headers PRIVATE ${VORTEL_COMMON_HEADERS})
endif()

# vortel_library(NAME name SOURCES file... [LINKS library...]): one folder, one static library.
# LINKS are PUBLIC: what a folder's headers show is what its users may see.
function(vortel_library)
  cmake_parse_arguments(ARG "" "NAME" "SOURCES;LINKS" ${ARGN})
  if(NOT ARG_SOURCES)
    add_library(${ARG_NAME} INTERFACE)
    target_link_libraries(${ARG_NAME} INTERFACE vortel-settings ${ARG_LINKS})
    return()
  endif()
  add_library(${ARG_NAME} STATIC ${ARG_SOURCES})
  target_link_libraries(${ARG_NAME} PUBLIC vortel-settings ${ARG_LINKS})
  if(VORTEL_PRECOMPILE)
    target_precompile_headers(${ARG_NAME} REUSE_FROM vortel-headers)
  endif()
endfunction()

# vortel_split_symbols(target): in a release, debug symbols go into a file of their own beside the program.
function(vortel_split_symbols target)
  if(CMAKE_BUILD_TYPE STREQUAL "Release" AND CMAKE_OBJCOPY)
    add_custom_command(TARGET ${target} POST_BUILD
      COMMAND ${CMAKE_OBJCOPY} --only-keep-debug $<TARGET_FILE:${target}> $<TARGET_FILE:${target}>.debug
      COMMAND ${CMAKE_OBJCOPY} --strip-debug --add-gnu-debuglink=$<TARGET_FILE:${target}>.debug $<TARGET_FILE:${target}>
      VERBATIM)
  endif()
endfunction()

# vortel_program(NAME name SOURCES file... LINKS library...): a program in build/NAME/bin.
function(vortel_program)
  cmake_parse_arguments(ARG "" "NAME" "SOURCES;LINKS" ${ARGN})
  add_executable(${ARG_NAME} ${ARG_SOURCES})
  target_link_libraries(${ARG_NAME} PRIVATE vortel-settings ${ARG_LINKS})
  vortel_split_symbols(${ARG_NAME})
endfunction()

# vortel_test(NAME name SOURCES file... LINKS library...): a GoogleTest program, each case known to ctest.
function(vortel_test)
  cmake_parse_arguments(ARG "" "NAME" "SOURCES;LINKS" ${ARGN})
  add_executable(${ARG_NAME} ${ARG_SOURCES})
  target_link_libraries(${ARG_NAME} PRIVATE vortel-settings ${ARG_LINKS} GTest::gmock GTest::gtest_main)
  if(VORTEL_PRECOMPILE)
    if(NOT TARGET vortel-test-headers)
      add_executable(vortel-test-headers EXCLUDE_FROM_ALL "${CMAKE_SOURCE_DIR}/cmake/Empty.cpp")
      target_link_libraries(vortel-test-headers PRIVATE vortel-settings GTest::gmock GTest::gtest_main)
      target_precompile_headers(vortel-test-headers PRIVATE ${VORTEL_COMMON_HEADERS} <gmock/gmock.h> <gtest/gtest.h>)
    endif()
    target_precompile_headers(${ARG_NAME} REUSE_FROM vortel-test-headers)
  endif()
  gtest_discover_tests(${ARG_NAME} DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 300)
  # Nothing reaches the settings of who runs the tests. The variables are set where ctest reads the tests that were
  # discovered: as a property of theirs, only the first of a list would arrive.
  set(home "${CMAKE_BINARY_DIR}/home")
  set(script "${CMAKE_CURRENT_BINARY_DIR}/${ARG_NAME}-environment.cmake")
  file(WRITE "${script}" "foreach(test IN LISTS ${ARG_NAME}_TESTS)
  set_tests_properties(\"\${test}\" PROPERTIES ENVIRONMENT
    \"XDG_CONFIG_HOME=${home}/config;XDG_STATE_HOME=${home}/state;XDG_DATA_HOME=${home}/data;\\
LSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/tests/library-leaks.txt:print_suppressions=0\")
endforeach()
")
  set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES "${script}")
endfunction()
