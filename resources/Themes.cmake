# What a theme needs: the themes themselves, and the images of the texture set "Default", which are worked out.

foreach(theme Default Light "High Contrast")
  vortel_resource_copy("Themes/${theme}.xml" "${CMAKE_CURRENT_SOURCE_DIR}/Themes/${theme}.xml")
endforeach()

add_executable(make-textures MakeTextures.cpp)
target_link_libraries(make-textures PRIVATE vortel-settings "${FREEIMAGE_LIBRARY}")
set(textures_dir "${VORTEL_RESOURCES}/Skin/Textures/Default")
set(textures
  ButtonBlending RoundButtonBlending PressedRoundButtonBlending PressedButtonBlending HScrollBarBlending
  VScrollBarBlending HSliderBlending VSliderBlending PanelBlending ControlBarBlending InnerBodyTexture BodyTexture)
list(TRANSFORM textures PREPEND "${textures_dir}/")
list(TRANSFORM textures APPEND ".bmp")
add_custom_command(
  OUTPUT ${textures}
  COMMAND "${CMAKE_COMMAND}" -E make_directory "${textures_dir}"
  COMMAND make-textures "${textures_dir}"
  DEPENDS make-textures VERBATIM)
set_property(GLOBAL APPEND PROPERTY VORTEL_RESOURCE_FILES ${textures})
