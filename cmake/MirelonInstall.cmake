# What `cmake --install` puts where. Components: plugin, tools, docs, metainfo; lv2 and
# clap stand with their plug-ins.
install(TARGETS mirelon LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}/vst" COMPONENT plugin)
install(FILES packaging/example.dravik.mirelon.metainfo.xml
        DESTINATION "${CMAKE_INSTALL_DATADIR}/metainfo" COMPONENT metainfo)

# The toolkit's licence as the toolkit words it.
file(STRINGS "${MIRELON_VSTGUI_DIR}/LICENSE" _lines)
foreach(_line IN LISTS _lines)
  string(REGEX REPLACE "^// ?" "" _line "${_line}")
  string(APPEND MIRELON_VSTGUI_LICENSE "${_line}\n")
endforeach()
configure_file(packaging/third-party-notices.md.in third-party-notices.md @ONLY)

# The pages for users, with the pages and pictures that they point to.
install(FILES CHANGELOG.md "${CMAKE_BINARY_DIR}/third-party-notices.md" docs/manual.md docs/formats.md
              docs/lv2.md docs/clap.md docs/hosts.md docs/mirelon-host.md docs/checks.md
        DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT docs)
install(FILES docs/images/editor-parts.png docs/images/meters.png
        DESTINATION "${CMAKE_INSTALL_DOCDIR}/images" COMPONENT docs)

# The man pages are the same text as the pages in docs/.
find_program(LOWDOWN_EXECUTABLE lowdown DOC "Makes the man pages; without it there are none")
add_custom_target(mirelon-pages)
function(mirelon_man_page name section page component summary)
  set(output "${CMAKE_BINARY_DIR}/man/${name}.${section}")
  add_custom_command(OUTPUT "${output}"
    COMMAND "${CMAKE_COMMAND}" "-DLOWDOWN=${LOWDOWN_EXECUTABLE}" "-DPAGE=${CMAKE_SOURCE_DIR}/${page}"
            "-DNAME=${name}" "-DSECTION=${section}" "-DSUMMARY=${summary}"
            "-DVERSION=${PROJECT_VERSION}" "-DOUTPUT=${output}"
            -P "${CMAKE_SOURCE_DIR}/cmake/ManPage.cmake"
    DEPENDS "${page}" "${CMAKE_SOURCE_DIR}/cmake/ManPage.cmake" VERBATIM)
  add_custom_target("mirelon-page-${name}" ALL DEPENDS "${output}")
  add_dependencies(mirelon-pages "mirelon-page-${name}")
  install(FILES "${output}" DESTINATION "${CMAKE_INSTALL_MANDIR}/man${section}"
          COMPONENT "${component}")
endfunction()
if(LOWDOWN_EXECUTABLE)
  file(MAKE_DIRECTORY "${CMAKE_BINARY_DIR}/man")
  mirelon_man_page(mirelon 7 docs/manual.md docs "stereo-image processor, a VST 2.4 plug-in")
  if(MIRELON_TOOLS)
    mirelon_man_page(mirelon-host 1 docs/mirelon-host.md tools "a small host for VST 2.4, LV2 and CLAP effects")
  endif()
else()
  message(STATUS "lowdown was not found: no man pages")
endif()

if(MIRELON_TOOLS)
  install(TARGETS mirelon-host RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT tools)
  install(FILES "${CMAKE_BINARY_DIR}/tools/completion.bash" RENAME mirelon-host
          DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" COMPONENT tools)
  install(FILES "${CMAKE_BINARY_DIR}/tools/completion.zsh" RENAME _mirelon-host
          DESTINATION "${CMAKE_INSTALL_DATADIR}/zsh/site-functions" COMPONENT tools)
endif()
