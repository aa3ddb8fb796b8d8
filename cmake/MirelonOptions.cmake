# What all of our own code is compiled with: target mirelon_options, and
# mirelon_room(NAME [AUDIO] SOURCES ... [LINK ...]) for the plug-in's rooms.
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_CXX_EXTENSIONS OFF)

add_library(mirelon_options INTERFACE)
target_compile_features(mirelon_options INTERFACE cxx_std_20)
target_include_directories(mirelon_options INTERFACE "${CMAKE_SOURCE_DIR}")
# The arithmetic is exact to the bit: products and sums are rounded as written
# and fused only where the code says std::fma.
target_compile_options(mirelon_options INTERFACE -ffp-contract=off -Wall -Wextra -Wconversion)
if(MIRELON_WERROR)
  target_compile_options(mirelon_options INTERFACE -Werror)
endif()

# Sanitizers cover the toolkit as well: mixed builds give false reports.
if(MIRELON_SANITIZE)
  add_compile_options("-fsanitize=${MIRELON_SANITIZE}" -fno-omit-frame-pointer)
  if(MIRELON_SANITIZE MATCHES "undefined")
    add_compile_options(-fno-sanitize-recover=undefined -fno-sanitize=vptr)
  endif()
  add_link_options("-fsanitize=${MIRELON_SANITIZE}")
endif()

# AUDIO: the room's code runs for each block of audio. Its arrays have lengths that
# the compiler knows, and a guard of the stack costs a store and a load each time. All
# other code waits for hands, files or the display, and is made small rather than fast.
function(mirelon_room name)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "AUDIO" "" "SOURCES;LINK")
  add_library(mirelon_${name} OBJECT ${ARG_SOURCES})
  target_link_libraries(mirelon_${name} PRIVATE mirelon_options PUBLIC ${ARG_LINK})
  # The plug-in is linked with --gc-sections: what nobody calls stays out of it.
  target_compile_options(mirelon_${name} PRIVATE -ffunction-sections -fdata-sections)
  if(ARG_AUDIO)
    target_compile_options(mirelon_${name} PRIVATE -fno-stack-protector)
  else()
    target_compile_options(mirelon_${name} PRIVATE $<$<CONFIG:Release>:-O2>)
  endif()
endfunction()
