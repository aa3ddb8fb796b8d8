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

# mirelon_unity(): what is defined after it is compiled several files at a time, if
# MIRELON_UNITY is on: most of the time goes into headers, which are then read once for
# all of them. Sources whose own names clash with those of others are left out by
# mirelon_apart(SOURCE...); builds without MIRELON_UNITY and the analysis, which takes
# files one by one, show that each of the others includes what it uses.
macro(mirelon_unity)
  set(CMAKE_UNITY_BUILD ${MIRELON_UNITY})
  # No file is the main one then, whose classes may hold what is unnamed.
  add_compile_options($<$<AND:$<BOOL:${MIRELON_UNITY}>,$<CXX_COMPILER_ID:GNU>>:-Wno-subobject-linkage>)
endmacro()
function(mirelon_apart)
  set_source_files_properties(${ARGN} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
endfunction()
if(MIRELON_SANITIZE)
  mirelon_unity()
endif()

# AUDIO: the room's code runs for each block of audio. Its arrays have lengths that
# the compiler knows, and a guard of the stack costs a store and a load each time.
# WINDOW: it waits for hands, files or the display, and is made as small as may be. All
# other code is called by hosts at any time, and is made small where that costs nothing.
function(mirelon_room name)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "AUDIO;WINDOW" "" "SOURCES;LINK")
  add_library(mirelon_${name} OBJECT ${ARG_SOURCES})
  target_link_libraries(mirelon_${name} PRIVATE mirelon_options PUBLIC ${ARG_LINK})
  # The plug-in is linked with --gc-sections: what nobody calls stays out of it.
  target_compile_options(mirelon_${name} PRIVATE -ffunction-sections -fdata-sections)
  if(ARG_AUDIO)
    target_compile_options(mirelon_${name} PRIVATE -fno-stack-protector)
  elseif(ARG_WINDOW)
    target_compile_options(mirelon_${name} PRIVATE $<$<CONFIG:Release>:-Os>)
  else()
    target_compile_options(mirelon_${name} PRIVATE $<$<CONFIG:Release>:-O2>)
  endif()
endfunction()
