# Target mirelon: the plug-in, one .so that exports its two entry points and
# nothing else. Target mirelon_rooms: the same objects for the tests.
add_library(mirelon_rooms INTERFACE)
target_link_libraries(mirelon_rooms INTERFACE mirelon_options)
set(_objects "")
foreach(room shell platform presetimages presetstore presetsystem core processor resources editor)
  target_link_libraries(mirelon_rooms INTERFACE mirelon_${room})
  list(APPEND _objects $<TARGET_OBJECTS:mirelon_${room}>)
endforeach()
target_sources(mirelon_rooms INTERFACE ${_objects})

add_library(mirelon MODULE "${CMAKE_SOURCE_DIR}/shell/entry.cpp")
set_target_properties(mirelon PROPERTIES
  PREFIX "" OUTPUT_NAME mirelon
  LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/plugin"
  LINK_DEPENDS "${CMAKE_SOURCE_DIR}/shell/exports.map")
target_link_libraries(mirelon PRIVATE mirelon_rooms)
target_link_options(mirelon PRIVATE
  "-Wl,--version-script=${CMAKE_SOURCE_DIR}/shell/exports.map"
  -Wl,--exclude-libs,ALL -Wl,--gc-sections -Wl,--as-needed
  # Pango's types stay registered with GLib for the life of the process, so the
  # code behind them must stay mapped when a host unloads the plug-in.
  -Wl,-z,nodelete)
if(NOT MIRELON_SANITIZE)
  target_link_options(mirelon PRIVATE -Wl,-z,defs)
endif()

# Target mirelon_effecthost: what the plug-ins of other formats hold their effect by.
add_library(mirelon_effecthost OBJECT "${CMAKE_SOURCE_DIR}/formats/effecthost.cpp")
target_link_libraries(mirelon_effecthost PRIVATE mirelon_options)
