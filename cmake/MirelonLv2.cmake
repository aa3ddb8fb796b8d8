# The LV2 bundle in the build folder, mirelon.lv2: the plug-in without a window
# (it needs nothing but the C and C++ libraries), the window by itself, and the
# data files, which hosts read before they load either.
pkg_check_modules(LV2 REQUIRED IMPORTED_TARGET lv2>=1.18.2)

set(MIRELON_LV2_FOLDER "${CMAKE_SOURCE_DIR}/formats/lv2")
set(MIRELON_LV2_BUNDLE "${CMAKE_BINARY_DIR}/lv2/mirelon.lv2")

# The ports and the messages; each binary and the tests bring the effect itself.
add_library(mirelon_lv2_common OBJECT
  "${MIRELON_LV2_FOLDER}/bankmessage.cpp" "${MIRELON_LV2_FOLDER}/portvalues.cpp")
target_link_libraries(mirelon_lv2_common PRIVATE mirelon_options PkgConfig::LV2)

# mirelon_lv2_binary(TARGET NAME SOURCES ... LINK ... EXPORTS FILE)
function(mirelon_lv2_binary target)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "" "NAME;EXPORTS" "SOURCES;LINK")
  add_library(${target} MODULE ${ARG_SOURCES})
  set_target_properties(${target} PROPERTIES
    PREFIX "" OUTPUT_NAME ${ARG_NAME} LIBRARY_OUTPUT_DIRECTORY "${MIRELON_LV2_BUNDLE}"
    LINK_DEPENDS "${ARG_EXPORTS}")
  target_link_libraries(${target} PRIVATE mirelon_options mirelon_effecthost mirelon_lv2_common ${ARG_LINK}
                                          PkgConfig::LV2)
  target_link_options(${target} PRIVATE
    "-Wl,--version-script=${ARG_EXPORTS}" -Wl,--exclude-libs,ALL -Wl,--gc-sections
    -Wl,--as-needed)
  if(NOT MIRELON_SANITIZE)
    target_link_options(${target} PRIVATE -Wl,-z,defs)
  endif()
endfunction()

mirelon_lv2_binary(mirelon_lv2_dsp NAME mirelon_dsp EXPORTS "${MIRELON_LV2_FOLDER}/audio.map"
  SOURCES "${MIRELON_LV2_FOLDER}/audioentry.cpp" "${MIRELON_LV2_FOLDER}/audiowrapper.cpp"
          "${CMAKE_SOURCE_DIR}/processor/noeditor.cpp"
  LINK mirelon_shell mirelon_presetimages mirelon_presetstore mirelon_core mirelon_processor)

mirelon_lv2_binary(mirelon_lv2_ui NAME mirelon_ui EXPORTS "${MIRELON_LV2_FOLDER}/window.map"
  SOURCES "${MIRELON_LV2_FOLDER}/windowentry.cpp" "${MIRELON_LV2_FOLDER}/windowwrapper.cpp"
          "${MIRELON_LV2_FOLDER}/scalefactor.cpp"
  LINK mirelon_rooms)
# As for the VST 2.4 plug-in: Pango's types stay registered.
target_link_options(mirelon_lv2_ui PRIVATE -Wl,-z,nodelete)

set(_data manifest.ttl mirelon.ttl presets.ttl)
list(TRANSFORM _data PREPEND "${MIRELON_LV2_FOLDER}/mirelon.lv2/")
add_custom_target(mirelon_lv2_data ALL
  COMMAND "${CMAKE_COMMAND}" -E make_directory "${MIRELON_LV2_BUNDLE}"
  COMMAND "${CMAKE_COMMAND}" -E copy_if_different ${_data} "${MIRELON_LV2_BUNDLE}"
  VERBATIM)
add_custom_target(mirelon_lv2 DEPENDS mirelon_lv2_dsp mirelon_lv2_ui mirelon_lv2_data)

set(_destination "${CMAKE_INSTALL_LIBDIR}/lv2/mirelon.lv2")
install(TARGETS mirelon_lv2_dsp mirelon_lv2_ui LIBRARY DESTINATION "${_destination}" COMPONENT lv2)
install(FILES ${_data} DESTINATION "${_destination}" COMPONENT lv2)
