# One function per kind of target. Files are always listed by name.

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
endfunction()

# vortel_program(NAME name SOURCES file... LINKS library...): a program in build/NAME/bin.
function(vortel_program)
  cmake_parse_arguments(ARG "" "NAME" "SOURCES;LINKS" ${ARGN})
  add_executable(${ARG_NAME} ${ARG_SOURCES})
  target_link_libraries(${ARG_NAME} PRIVATE vortel-settings ${ARG_LINKS})
  if(CMAKE_BUILD_TYPE STREQUAL "Release" AND CMAKE_OBJCOPY)
    add_custom_command(TARGET ${ARG_NAME} POST_BUILD
      COMMAND ${CMAKE_OBJCOPY} --only-keep-debug $<TARGET_FILE:${ARG_NAME}> $<TARGET_FILE:${ARG_NAME}>.debug
      COMMAND ${CMAKE_OBJCOPY} --strip-debug --add-gnu-debuglink=$<TARGET_FILE:${ARG_NAME}>.debug
              $<TARGET_FILE:${ARG_NAME}>
      VERBATIM)
  endif()
endfunction()

# vortel_test(NAME name SOURCES file... LINKS library...): a GoogleTest program, each case known to ctest.
function(vortel_test)
  cmake_parse_arguments(ARG "" "NAME" "SOURCES;LINKS" ${ARGN})
  add_executable(${ARG_NAME} ${ARG_SOURCES})
  target_link_libraries(${ARG_NAME} PRIVATE vortel-settings ${ARG_LINKS} GTest::gmock GTest::gtest_main)
  gtest_discover_tests(${ARG_NAME} DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 300)
endfunction()
