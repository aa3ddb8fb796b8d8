# mirelon_fetched(VARIABLE ROOT dir FOLDER name SCRIPT name): the folder with
# somebody else's sources. ROOT where the user has given one; otherwise they are
# fetched by the script: once for all build folders below build/, which the
# presets use, and into the build folder itself where that lies elsewhere, so that
# our own sources may be read-only.
function(mirelon_fetched variable)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "" "ROOT;FOLDER;SCRIPT" "")
  if(ARG_ROOT)
    get_filename_component(folder "${ARG_ROOT}" ABSOLUTE)
  else()
    set(shared "${CMAKE_SOURCE_DIR}/build")
    cmake_path(IS_PREFIX shared "${CMAKE_BINARY_DIR}" NORMALIZE is_shared)
    if(is_shared)
      set(folder "${shared}/${ARG_FOLDER}")
    else()
      set(folder "${CMAKE_BINARY_DIR}/${ARG_FOLDER}")
    endif()
    execute_process(COMMAND "${CMAKE_SOURCE_DIR}/scripts/${ARG_SCRIPT}" "${folder}"
                    COMMAND_ERROR_IS_FATAL ANY)
  endif()
  set(${variable} "${folder}" PARENT_SCOPE)
endfunction()
