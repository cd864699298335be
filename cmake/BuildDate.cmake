# VORTEL_BUILD_DATE, the day that the program calls its build date, in the form of "Jul 29 2026"; the same as
# VORTEL_RELEASE_DATE in the form of "2026-07-29". It belongs to the sources and not to the clock, so that the same sources
# make the same files on any day: SOURCE_DATE_EPOCH where it is set, else the commit's day, else what `git archive` has
# written into CommitDate.txt, and only then today.
if(DEFINED ENV{SOURCE_DATE_EPOCH})
  set(seconds "$ENV{SOURCE_DATE_EPOCH}")
else()
  file(READ "${CMAKE_CURRENT_LIST_DIR}/CommitDate.txt" seconds)
  string(STRIP "${seconds}" seconds)
  find_package(Git QUIET)
  if(Git_FOUND AND EXISTS "${CMAKE_SOURCE_DIR}/.git")
    execute_process(COMMAND "${GIT_EXECUTABLE}" log -1 --format=%ct WORKING_DIRECTORY "${CMAKE_SOURCE_DIR}"
      OUTPUT_VARIABLE seconds OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
  endif()
endif()

if(seconds MATCHES "^[0-9]+$")
  set(kept "$ENV{SOURCE_DATE_EPOCH}")
  set(ENV{SOURCE_DATE_EPOCH} "${seconds}")
  string(TIMESTAMP VORTEL_BUILD_DATE "%b %d %Y" UTC)
  string(TIMESTAMP VORTEL_RELEASE_DATE "%Y-%m-%d" UTC)
  if(kept STREQUAL "")
    unset(ENV{SOURCE_DATE_EPOCH})
  endif()
else()
  string(TIMESTAMP VORTEL_BUILD_DATE "%b %d %Y" UTC)
  string(TIMESTAMP VORTEL_RELEASE_DATE "%Y-%m-%d" UTC)
endif()
string(REPLACE " 0" "  " VORTEL_BUILD_DATE "${VORTEL_BUILD_DATE}")
