# The pictures of the skin. Each is drawn in pictures/FOLDER/NAME.svg on the pixel grid of scale 1 and made in both
# resolutions: white on black as .bmp where the program tints it and needs no transparency, .png where it does, .gif for
# cursors (with a .png twin, whose edges are smooth, for systems that show such cursors).

find_program(RSVG_CONVERT rsvg-convert REQUIRED)
find_library(FREEIMAGE_LIBRARY freeimage REQUIRED)
add_executable(make-picture MakePicture.cpp)
target_link_libraries(make-picture PRIVATE vortel-settings "${FREEIMAGE_LIBRARY}")

# vortel_pictures(FOLDER FORMAT NAME...): Skin/FOLDER/NAME.FORMAT and its twin for scale 2.
function(vortel_pictures folder format)
  foreach(name IN LISTS ARGN)
    set(drawing "${CMAKE_CURRENT_SOURCE_DIR}/pictures/${folder}/${name}.svg")
    foreach(scale 1 2)
      set(suffix "")
      if(scale EQUAL 2)
        set(suffix "@2x")
      endif()
      set(out "Skin/${folder}/${name}${suffix}")
      if(format STREQUAL "png")
        vortel_resource("${out}.png" DEPENDS "${drawing}"
          COMMAND "${RSVG_CONVERT}" -z ${scale} -o "${VORTEL_RESOURCES}/${out}.png" "${drawing}")
      else()
        set(rendered "${CMAKE_CURRENT_BINARY_DIR}/rendered/${folder}/${name}${suffix}.png")
        if(format STREQUAL "gif")
          set(rendered "${VORTEL_RESOURCES}/${out}.png")
        endif()
        vortel_resource("${out}.${format}" DEPENDS "${drawing}" make-picture
          COMMAND "${RSVG_CONVERT}" -z ${scale} -o "${rendered}" "${drawing}"
          COMMAND make-picture "${rendered}" "${VORTEL_RESOURCES}/${out}.${format}")
      endif()
    endforeach()
  endforeach()
  file(MAKE_DIRECTORY "${VORTEL_RESOURCES}/Skin/${folder}" "${CMAKE_CURRENT_BINARY_DIR}/rendered/${folder}")
endfunction()

vortel_pictures(Icons bmp
  ArrowDown ArrowLeft ArrowRight ArrowUp Clear Exit KeyAlt_Apple KeyCommand_Apple KeyMeta_Apple KeyShift_Apple
  Maximize Minimize Randomise Rename Restore SwitchOff SwitchOn
)
vortel_pictures(Icons png
  Dialog_Alert Dialog_Standard DragHandle FilterBandpass FilterBandstop FilterHighpass FilterLowpass FilterOff
  Locked Loop Unlocked WindowIcon16
)
vortel_pictures(Logos png Logo LogoOnLight)
vortel_pictures(Cursors gif
  CanClone CanCopy CanCreateAlias CanDrag CanDrop CanNotDrop Crosshair Default Drag EditText Empty ExtendBottom
  ExtendBottomAlias ExtendLeft ExtendLeftAlias ExtendRight ExtendRightAlias ExtendTop ExtendTopAlias Move
  Pencil PlaceMarker Play ResizeEdgeDiagonalLeft ResizeEdgeDiagonalRight ResizeEdgeHorizontal
  ResizeEdgeVertical ResizeHorizontal ResizeVertical ValueChooser Zoom ZoomHorizontal ZoomVertical
)
