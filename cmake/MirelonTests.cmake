# mirelon_test(NAME SOURCES ... [LINK ...] [ROOMS] [LABELS ...] [TIMEOUT s]
#              [LOCKS filter=name ...] [SINGLY])
# makes one GoogleTest executable and registers each of its tests with CTest.
# ROOMS links the plug-in's own objects; tests that see the plug-in as a host
# does load the built .so instead, whose path is the macro MIRELON_PLUGIN_FILE. Of
# tests with the same name in LOCKS, which each filter of GoogleTest's gives to some of
# the program's, one runs at a time; they begin early.
#
# In sanitized builds a program's tests run in one process, because what a process
# costs there (the plug-in's libraries, an X server, the search for leaks) is most of
# what a test takes; so do those of the core alone, where an emulator is what starts.
# SINGLY leaves each a process of its own there as well: it starts other programs, which
# take longer.
#
# Target threaded_tests: those with "threads" in their label, which a ThreadSanitizer
# build runs. Target headless_tests: those that need neither a display nor real hosts,
# which have x11 or hosts in their label.
include(GoogleTest)
find_package(GTest QUIET)
if(NOT GTest_FOUND)
  # For another processor than the machine's: from the sources, as Debian packages them.
  set(_gtest_sources /usr/src/googletest)
  if(NOT EXISTS "${_gtest_sources}/CMakeLists.txt")
    message(FATAL_ERROR "GoogleTest was not found, nor its sources in ${_gtest_sources} (-DMIRELON_TESTS=OFF builds without)")
  endif()
  add_subdirectory("${_gtest_sources}" "${CMAKE_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL)
endif()

add_custom_target(threaded_tests)
add_custom_target(headless_tests)

# GoogleTest's header is most of what many test programs are compiled from: where it is
# about time, the first one of them keeps for all others what the compiler makes of it.
# Those must define what the first one does, the toolkit's NDEBUG among it.
function(mirelon_share_test_header name)
  target_compile_definitions(${name} PRIVATE NDEBUG)
  target_compile_options(${name} PRIVATE -pthread)
  get_property(_keeper GLOBAL PROPERTY MIRELON_TEST_HEADER_KEEPER)
  if(_keeper)
    target_precompile_headers(${name} REUSE_FROM ${_keeper})
  else()
    target_precompile_headers(${name} PRIVATE <gtest/gtest.h>)
    set_property(GLOBAL PROPERTY MIRELON_TEST_HEADER_KEEPER ${name})
  endif()
endfunction()

function(mirelon_test name)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "ROOMS;SINGLY" "TIMEOUT" "SOURCES;LINK;LABELS;LOCKS")
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE mirelon_options ${ARG_LINK} GTest::gmock GTest::gtest
                                        GTest::gtest_main)
  if(ARG_ROOMS)
    target_link_libraries(${name} PRIVATE mirelon_rooms)
  endif()
  if(MIRELON_UNITY)
    mirelon_share_test_header(${name})
  endif()
  if(TARGET mirelon)
    target_compile_definitions(${name} PRIVATE
      "MIRELON_PLUGIN_FILE=\"$<TARGET_FILE:mirelon>\"")
    add_dependencies(${name} mirelon)
  endif()
  if(ARG_LABELS MATCHES "threads")
    add_dependencies(threaded_tests ${name})
  endif()
  if(NOT ARG_LABELS MATCHES "x11|hosts")
    add_dependencies(headless_tests ${name})
  endif()
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  set(_properties TIMEOUT ${ARG_TIMEOUT})
  if(ARG_LABELS)
    list(APPEND _properties LABELS ${ARG_LABELS})
  endif()
  if((MIRELON_SANITIZE OR MIRELON_CORE_ONLY) AND NOT ARG_SINGLY)
    # Of the whole program.
    math(EXPR _timeout "5 * ${ARG_TIMEOUT}")
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES ${_properties} TIMEOUT ${_timeout})
  elseif(NOT ARG_LOCKS)
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST PROPERTIES ${_properties})
  else()
    foreach(_entry IN LISTS ARG_LOCKS)
      string(REGEX MATCH "^(.*)=(.*)$" _ "${_entry}")
      gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST TEST_FILTER "${CMAKE_MATCH_1}"
        PROPERTIES ${_properties} RESOURCE_LOCK ${CMAKE_MATCH_2} COST 1000)
    endforeach()
  endif()
endfunction()
