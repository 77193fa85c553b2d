# SPDX-License-Identifier: MIT
# One test for each suite of a GoogleTest program, where the start of the program is the longest part
# of a run. The program itself tells its suites, whenever it is built, so that none can be forgotten.
#
#   discover_suites(program prefix TIMEOUT seconds [LONG NAME=value...])
#
# LONG adds each suite again, as prefix<suite>.long of the configuration and label `stress`, with an
# hour and this environment.
function(discover_suites program prefix)
  cmake_parse_arguments(PARSE_ARGV 2 arg "" "TIMEOUT" "LONG")
  set(tests "${CMAKE_CURRENT_BINARY_DIR}/${program}_suites.cmake")
  add_custom_command(TARGET ${program} POST_BUILD BYPRODUCTS "${tests}" VERBATIM
    COMMAND "${CMAKE_COMMAND}" -D "program=$<TARGET_FILE:${program}>" -D "prefix=${prefix}"
      -D "timeout=${arg_TIMEOUT}" -D "long=${arg_LONG}" -D "tests=${tests}"
      -P "${CMAKE_SOURCE_DIR}/cmake/write_suites.cmake")
  set(include "${CMAKE_CURRENT_BINARY_DIR}/${program}_include.cmake")
  file(CONFIGURE OUTPUT "${include}" @ONLY CONTENT [[
if(EXISTS "@tests@")
  include("@tests@")
else()
  add_test(@program@_NOT_BUILT @program@_NOT_BUILT)
endif()
]])
  set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES "${include}")
endfunction()
