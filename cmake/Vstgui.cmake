# Target vstgui: the toolkit and its VST 2 editor binding as one static library.
#
# Without VSTGUI_ROOT the pinned sources are fetched. A checkout given by the user
# must have the patch beside this file applied.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
             "${CMAKE_CURRENT_LIST_DIR}/vstgui-4.13.3.patch")
include(MirelonFetched)
mirelon_fetched(MIRELON_VSTGUI_DIR ROOT "${VSTGUI_ROOT}" FOLDER vstgui-4.13.3 SCRIPT fetch-vstgui)
message(STATUS "VSTGUI: ${MIRELON_VSTGUI_DIR}")
file(STRINGS "${MIRELON_VSTGUI_DIR}/vstgui/lib/cframe.h" _cframe REGEX "^class CFrame ")
file(STRINGS "${MIRELON_VSTGUI_DIR}/vstgui/lib/platform/linux/x11frame.cpp" _observed
     REGEX "keyObserver->|xcb_discard_reply")
list(LENGTH _observed _changes)
if(NOT _cframe OR _cframe MATCHES "final" OR NOT _changes EQUAL 3)
  message(FATAL_ERROR "${MIRELON_VSTGUI_DIR}: not VSTGUI 4.13.3 with "
                      "cmake/vstgui-4.13.3.patch applied")
endif()

find_package(PkgConfig REQUIRED)
pkg_check_modules(VSTGUI_DEPS REQUIRED IMPORTED_TARGET
  x11 xcb xcb-util xcb-cursor xcb-keysyms xcb-xkb xkbcommon xkbcommon-x11
  glib-2.0 cairo pangocairo pangoft2 fontconfig freetype2)

add_library(vstgui STATIC
  "${MIRELON_VSTGUI_DIR}/vstgui/vstgui_linux.cpp"
  "${MIRELON_VSTGUI_DIR}/vstgui/plugin-bindings/aeffguieditor.cpp")
# Its editor binding redefines what its other file includes.
set_target_properties(vstgui PROPERTIES UNITY_BUILD OFF)
target_compile_features(vstgui PUBLIC cxx_std_17)
target_include_directories(vstgui SYSTEM PUBLIC "${MIRELON_VSTGUI_DIR}"
  # The include names that the editor binding asks for, served by our shell.
  "${CMAKE_SOURCE_DIR}/shell/forward")
target_include_directories(vstgui PRIVATE "${CMAKE_SOURCE_DIR}")
# These change the layout of the toolkit's classes: all code that includes its
# headers is compiled with the same ones.
target_compile_definitions(vstgui PUBLIC
  NDEBUG RELEASE VSTGUI_ENABLE_DEPRECATED_METHODS=1 VSTGUI_OPENGL_SUPPORT=0)
file(RELATIVE_PATH _vstgui_from_build "${CMAKE_BINARY_DIR}" "${MIRELON_VSTGUI_DIR}")
target_compile_options(vstgui PRIVATE -w -ffunction-sections -fdata-sections
  # What it draws waits for the display and not for its code: smaller is better.
  $<$<CONFIG:Release>:-Os>
  # Its assertions and debug information name their source file: not by a path of this
  # machine, nor by one from the build folder, which a compiler cache may make of it.
  "-ffile-prefix-map=${MIRELON_VSTGUI_DIR}/=" "-ffile-prefix-map=${_vstgui_from_build}/=")
# Compiling it takes longer than anything else, and its pictures are the same without.
if(MIRELON_SANITIZE)
  target_compile_options(vstgui PRIVATE -O0)
endif()
# Its memory is watched with ours; the arithmetic inside it is not ours to mend.
if(MIRELON_SANITIZE MATCHES "undefined")
  target_compile_options(vstgui PRIVATE -fno-sanitize=undefined)
endif()
target_compile_options(vstgui PUBLIC -Wno-multichar)
target_link_libraries(vstgui PUBLIC PkgConfig::VSTGUI_DEPS ${CMAKE_DL_LIBS})
