# Toolchain file: builds for 64-bit ARM on another machine, with Debian's cross
# compiler. Programs that the build has just made, tests above all, run in qemu.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
# (g++ would note wherever it passes a pair otherwise than its versions before 10.)
set(CMAKE_CXX_FLAGS_INIT -Wno-psabi)
# Answers for the libraries of that architecture, which lie beside the machine's own.
set(PKG_CONFIG_EXECUTABLE aarch64-linux-gnu-pkg-config)
if(NOT CMAKE_HOST_SYSTEM_PROCESSOR STREQUAL "aarch64")
  set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64)
  # Where no libraries of that architecture are installed, the cross compiler's own.
  if(NOT EXISTS /lib/ld-linux-aarch64.so.1)
    list(APPEND CMAKE_CROSSCOMPILING_EMULATOR -L /usr/aarch64-linux-gnu)
  endif()
endif()
