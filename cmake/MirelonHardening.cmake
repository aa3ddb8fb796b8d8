# Hardening of everything that is built, the toolkit included: position-independent
# programs, read-only relocations that are complete before the first call, checked
# lengths in the C library's functions, and guarded stacks. A packager's own choice
# in the compiler's flags wins; sanitizers bring checks of their own.
#
# Text about the sources (assertions, debug information) names them relative to
# their folder, so that a build is the same wherever it is made.
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
# (Debuggers of the other builds want whole paths.)
add_compile_options(
  "$<$<CONFIG:Release>:-ffile-prefix-map=${CMAKE_SOURCE_DIR}/=;-ffile-prefix-map=${CMAKE_BINARY_DIR}/=build/>")

if(NOT MIRELON_SANITIZE)
  if(NOT CMAKE_CXX_FLAGS MATCHES "_FORTIFY_SOURCE")
    # It needs an optimised build.
    add_compile_options($<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-D_FORTIFY_SOURCE=2>)
  endif()
  if(NOT CMAKE_CXX_FLAGS MATCHES "-f(no-)?stack-protector")
    add_compile_options(-fstack-protector-strong)
  endif()
  add_link_options(-Wl,-z,relro -Wl,-z,now)
endif()
