# The published interfaces of VST 3 and the few helper classes of theirs that the adapter and its test host use,
# compiled once. A third party's code: its warnings are not ours.
set(VST3_SDK_DIR "/usr/share/juce/modules/juce_audio_processors/format_types/VST3_SDK" CACHE PATH
  "Folder with pluginterfaces, base and public.sdk of the VST 3 SDK")
if(NOT EXISTS "${VST3_SDK_DIR}/pluginterfaces/vst/ivstaudioprocessor.h")
  message(FATAL_ERROR "No VST 3 interfaces in ${VST3_SDK_DIR}; install juce-modules-source-data or set VST3_SDK_DIR")
endif()

add_library(vst3-sdk STATIC
  "${VST3_SDK_DIR}/base/source/baseiids.cpp"
  "${VST3_SDK_DIR}/base/source/fobject.cpp"
  "${VST3_SDK_DIR}/base/thread/source/flock.cpp"
  "${VST3_SDK_DIR}/pluginterfaces/base/conststringtable.cpp"
  "${VST3_SDK_DIR}/pluginterfaces/base/coreiids.cpp"
  "${VST3_SDK_DIR}/pluginterfaces/base/funknown.cpp"
  "${VST3_SDK_DIR}/pluginterfaces/base/ustring.cpp"
  "${VST3_SDK_DIR}/public.sdk/source/common/memorystream.cpp"
  "${VST3_SDK_DIR}/public.sdk/source/common/pluginview.cpp"
  "${VST3_SDK_DIR}/public.sdk/source/vst/vstinitiids.cpp"
  "${VST3_SDK_DIR}/public.sdk/source/vst/vstparameters.cpp"
)
target_include_directories(vst3-sdk SYSTEM PUBLIC "${VST3_SDK_DIR}")
target_compile_definitions(vst3-sdk PUBLIC RELEASE=1)
target_compile_options(vst3-sdk PRIVATE -w)
if(VORTEL_SANITIZE)
  target_compile_options(vst3-sdk PRIVATE -fsanitize=${VORTEL_SANITIZE} -fno-sanitize=undefined -g)
endif()
