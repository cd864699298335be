# Read by cpack before it packs: Debian keeps manual pages compressed, without a date inside.
if(CPACK_GENERATOR STREQUAL "DEB")
  file(GLOB_RECURSE pages "${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/share/man/*.1")
  foreach(page IN LISTS pages)
    execute_process(COMMAND gzip -9n "${page}" COMMAND_ERROR_IS_FATAL ANY)
  endforeach()
endif()
