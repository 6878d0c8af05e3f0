# SPDX-License-Identifier: GPL-3.0-or-later

# quillhaven_test(NAME LABEL label SOURCES... [LINKS targets...] [RUNNER command...] [TIMEOUT seconds])
#
# A GoogleTest program, registered as one CTest test. Labels: unit, component (a real service on a private bus), fault, kill,
# model, window. RUNNER is a command that runs the program, such as a script that starts the service. A sanitized build
# prefixes names and labels with QUILLHAVEN_TEST_PREFIX, so that one run of ctest can include several builds.
set(QUILLHAVEN_TEST_PREFIX "" CACHE STRING "Prefix of every test's name and label, such as asan-")

function(quillhaven_test name)
  cmake_parse_arguments(ARG "" "LABEL;TIMEOUT" "SOURCES;LINKS;RUNNER" ${ARGN})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 300)
  endif()
  add_executable(${name} ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(${name} PRIVATE quillhaven_test_support quillhaven_options ${ARG_LINKS} GTest::gmock)
  set(test ${QUILLHAVEN_TEST_PREFIX}${name})
  add_test(NAME ${test} COMMAND ${ARG_RUNNER} $<TARGET_FILE:${name}>)
  set_tests_properties(${test} PROPERTIES LABELS "${QUILLHAVEN_TEST_PREFIX}${ARG_LABEL}" TIMEOUT ${ARG_TIMEOUT})
  if(ARG_LABEL STREQUAL window)
    quillhaven_ignore_leaks(${test})
  endif()
endfunction()

# quillhaven_ignore_leaks(TEST): for a program with a window. The desktop libraries that it loads leak memory, and are already
# unloaded at its end, so that no suppression can name them. All other findings of the sanitizer still fail the test.
function(quillhaven_ignore_leaks test)
  set_property(TEST ${test} APPEND PROPERTY ENVIRONMENT_MODIFICATION "ASAN_OPTIONS=string_append::detect_leaks=0")
endfunction()
