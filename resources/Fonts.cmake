# The faces of the interface, from Debian's packages, with their licences beside them.

set(VORTEL_INTER_DIR "/usr/share/fonts/opentype/inter" CACHE PATH "Folder of the Inter faces (fonts-inter)")
set(VORTEL_DEJAVU_DIR "/usr/share/fonts/truetype/dejavu" CACHE PATH "Folder of the DejaVu faces (fonts-dejavu-core)")

function(vortel_faces folder package)
  foreach(face IN LISTS ARGN)
    if(NOT EXISTS "${folder}/${face}")
      message(FATAL_ERROR "No ${face} in ${folder}; install ${package}")
    endif()
    vortel_resource_copy("Skin/Fonts/${face}" "${folder}/${face}")
  endforeach()
  vortel_resource_copy("Skin/Fonts/${package}-copyright.txt" "/usr/share/doc/${package}/copyright")
endfunction()

vortel_faces("${VORTEL_INTER_DIR}" fonts-inter Inter-Regular.otf Inter-SemiBold.otf Inter-Italic.otf)
vortel_faces("${VORTEL_DEJAVU_DIR}" fonts-dejavu-core DejaVuSansMono.ttf)
vortel_resource_copy(Skin/Fonts/Config.xml "${CMAKE_CURRENT_SOURCE_DIR}/Fonts/Config.xml")
