# Target mirelon_clap: the CLAP plug-in in the build folder, mirelon.clap, one file
# with everything.
include(MirelonFetched)
mirelon_fetched(MIRELON_CLAP_DIR ROOT "${CLAP_ROOT}" FOLDER clap-1.1.1 SCRIPT fetch-clap)
message(STATUS "CLAP: ${MIRELON_CLAP_DIR}")
if(NOT EXISTS "${MIRELON_CLAP_DIR}/clap/entry.h")
  message(FATAL_ERROR "${MIRELON_CLAP_DIR}: there is no clap/entry.h (-DMIRELON_CLAP=OFF builds without)")
endif()
add_library(mirelon_clap_headers INTERFACE)
target_include_directories(mirelon_clap_headers SYSTEM INTERFACE "${MIRELON_CLAP_DIR}")

set(MIRELON_CLAP_FOLDER "${CMAKE_SOURCE_DIR}/formats/clap")
add_library(mirelon_clap MODULE
  "${MIRELON_CLAP_FOLDER}/clapplugin.cpp" "${MIRELON_CLAP_FOLDER}/clapwindow.cpp"
  "${MIRELON_CLAP_FOLDER}/clapwrapper.cpp" "${MIRELON_CLAP_FOLDER}/entry.cpp"
  "${MIRELON_CLAP_FOLDER}/hostlink.cpp" "${MIRELON_CLAP_FOLDER}/parametervalues.cpp")
set_target_properties(mirelon_clap PROPERTIES
  PREFIX "" OUTPUT_NAME mirelon SUFFIX .clap LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/clap"
  LINK_DEPENDS "${MIRELON_CLAP_FOLDER}/clap.map")
target_compile_definitions(mirelon_clap PRIVATE "MIRELON_VERSION=\"${PROJECT_VERSION}\"")
target_link_libraries(mirelon_clap PRIVATE mirelon_rooms mirelon_effecthost mirelon_clap_headers)
target_link_options(mirelon_clap PRIVATE
  "-Wl,--version-script=${MIRELON_CLAP_FOLDER}/clap.map"
  -Wl,--exclude-libs,ALL -Wl,--gc-sections -Wl,--as-needed
  # As for the VST 2.4 plug-in: Pango's types stay registered.
  -Wl,-z,nodelete)
if(NOT MIRELON_SANITIZE)
  target_link_options(mirelon_clap PRIVATE -Wl,-z,defs)
endif()

install(TARGETS mirelon_clap LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}/clap" COMPONENT clap)
