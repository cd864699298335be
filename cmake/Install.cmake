# What `cmake --install` puts where, and the Debian package that `cpack` makes of it.
set(CMAKE_INSTALL_DOCDIR "share/doc/vortel2" CACHE PATH "Where the documents are installed, below the prefix")
include(GNUInstallDirs)

# Hosts look below the prefix's lib, also where libraries of the system lie in a folder named after the machine.
set(VORTEL_VST3_DIR "lib/vst3" CACHE STRING "Where VST 3 plug-ins are installed, below the prefix")
set(VORTEL_VST2_DIR "lib/vst" CACHE STRING "Where VST 2 plug-ins are installed, below the prefix")
set(data "${CMAKE_INSTALL_DATAROOTDIR}")

# The manual page and the completions come from the program's own tables of options.
set(described "${CMAKE_BINARY_DIR}/described")
file(MAKE_DIRECTORY "${described}")
set(described_files "")
foreach(form man bash zsh fish)
  # Through a file of another name, so that a program that fails leaves nothing that looks finished.
  add_custom_command(OUTPUT "${described}/vortel2.${form}"
    COMMAND "${CMAKE_COMMAND}" -E env "XDG_STATE_HOME=${described}" $<TARGET_FILE:vortel2> describe ${form}
      > "${described}/vortel2.${form}.new"
    COMMAND "${CMAKE_COMMAND}" -E rename "${described}/vortel2.${form}.new" "${described}/vortel2.${form}"
    DEPENDS vortel2
    VERBATIM)
  list(APPEND described_files "${described}/vortel2.${form}")
endforeach()
add_custom_target(vortel2-described ALL DEPENDS ${described_files})

configure_file(packaging/example.brightfen.vortel2.metainfo.xml.in "${described}/example.brightfen.vortel2.metainfo.xml" @ONLY)

install(TARGETS vortel2 RUNTIME)
install(FILES "${described}/vortel2.man" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" RENAME vortel2.1)
install(FILES "${described}/vortel2.bash" DESTINATION "${data}/bash-completion/completions" RENAME vortel2)
install(FILES "${described}/vortel2.fish" DESTINATION "${data}/fish/vendor_completions.d")
# Debian's own packages have a folder of their own, which its zsh reads instead of the usual one.
install(CODE "
  set(folder site-functions)
  if(EXISTS /etc/debian_version AND CMAKE_INSTALL_PREFIX STREQUAL /usr)
    set(folder vendor-completions)
  endif()
  file(INSTALL \"${described}/vortel2.zsh\" DESTINATION \"\${CMAKE_INSTALL_PREFIX}/${data}/zsh/\${folder}\" RENAME _vortel2)")

install(TARGETS vortel-vst3 LIBRARY
  DESTINATION "${VORTEL_VST3_DIR}/Vortel2.vst3/Contents/${CMAKE_SYSTEM_PROCESSOR}-linux")
install(DIRECTORY "$<TARGET_FILE_DIR:vortel-vst3>/../Resources/" DESTINATION "${VORTEL_VST3_DIR}/Vortel2.vst3/Contents/Resources")
# All that is installed, and nothing of the tests.
add_custom_target(shipped DEPENDS vortel2 vortel2-described vortel-vst3)
if(TARGET vortel-vst2)
  install(TARGETS vortel-vst2 LIBRARY DESTINATION "${VORTEL_VST2_DIR}")
  add_dependencies(shipped vortel-vst2)
endif()

# What the program and a plug-in that is a bare library load. An empty name would be the whole machine.
if(NOT VORTEL_RESOURCES)
  message(FATAL_ERROR "The folder of the resources has no name")
endif()
install(DIRECTORY "${VORTEL_RESOURCES}/" DESTINATION "${data}/vortel2")

install(FILES packaging/vortel2.desktop DESTINATION "${data}/applications")
install(FILES packaging/vortel2.svg DESTINATION "${data}/icons/hicolor/scalable/apps")
install(FILES "${described}/example.brightfen.vortel2.metainfo.xml" DESTINATION "${data}/metainfo")
install(FILES README.md CHANGELOG.md CONTRIBUTING.md LICENSE packaging/copyright DESTINATION "${CMAKE_INSTALL_DOCDIR}")
install(DIRECTORY docs DESTINATION "${CMAKE_INSTALL_DOCDIR}")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vortel2)
set(CPACK_PACKAGE_VENDOR Brightfen)
set(CPACK_PACKAGE_CONTACT "Brightfen <support@brightfen.example>")
set(CPACK_PACKAGE_HOMEPAGE_URL "https://www.brightfen.example/vortel2")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "step-sequenced multi-effect plug-in")
set(CPACK_PACKAGE_DESCRIPTION "A step sequencer switches ten audio effects in time with the music.
The package holds the plug-in for hosts, and a program that renders sound
files through it and opens its editor without a host.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Loaded at run time where they are: input methods, the message bus for file dialogs, and a dialog without one.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "libxcb-imdkit1, libsystemd0")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "zenity | kdialog")
set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_SOURCE_DIR}/cmake/CompressForDebian.cmake")
include(CPack)
