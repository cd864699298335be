# Options and compiler settings that hold for every target of the project.

option(VORTEL_BUILD_TESTS "Build the test suite" ON)
option(VORTEL_BUILD_FUZZERS "Build the fuzzers, with clang" OFF)
option(VORTEL_BUILD_BENCHMARKS "Build the benchmarks" ON)
option(VORTEL_PRECOMPILE "Precompile the standard library's headers; off shows a file that forgot to include one" ON)
option(VORTEL_WARNINGS_AS_ERRORS "Stop at a compiler's warning; the project's own presets do" OFF)
set(VORTEL_SANITIZE "" CACHE STRING "Sanitizers, as -fsanitize takes them")

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/lib")

find_program(VORTEL_CCACHE ccache)
if(VORTEL_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${VORTEL_CCACHE}")
endif()

# Who builds packages has the last word: their flags follow ours, so that theirs win where the two disagree.
if(CMAKE_CXX_FLAGS)
  string(REPLACE "<FLAGS>" "<FLAGS> ${CMAKE_CXX_FLAGS}" CMAKE_CXX_COMPILE_OBJECT "${CMAKE_CXX_COMPILE_OBJECT}")
endif()

# What is shipped does not tell in which folder it was built. A debugger wants the real one.
add_compile_options(
  "$<$<NOT:$<CONFIG:Debug>>:-ffile-prefix-map=${CMAKE_SOURCE_DIR}=.;-ffile-prefix-map=${CMAKE_BINARY_DIR}=./build>")

find_package(Threads REQUIRED)
find_package(PkgConfig REQUIRED)

# Everything of our own is compiled with these; libraries' headers come in as system headers.
add_library(vortel-settings INTERFACE)
target_compile_options(vortel-settings INTERFACE
  -Wall -Wextra -Wconversion -Wshadow $<$<BOOL:${VORTEL_WARNINGS_AS_ERRORS}>:-Werror>
  # The same float arithmetic on every compiler and processor: no contraction into fused operations.
  -ffp-contract=off
  $<$<CONFIG:Release>:-g -O2>
)
target_include_directories(vortel-settings INTERFACE "${CMAKE_SOURCE_DIR}")
target_link_libraries(vortel-settings INTERFACE Threads::Threads)

if(VORTEL_SANITIZE)
  target_compile_options(vortel-settings INTERFACE
    -fsanitize=${VORTEL_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -g)
  target_link_options(vortel-settings INTERFACE -fsanitize=${VORTEL_SANITIZE})
endif()
