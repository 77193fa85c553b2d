# SPDX-License-Identifier: MIT
# The script behind discover_suites (TestSuites.cmake): writes the tests into a file for CTest.
execute_process(COMMAND "${program}" --gtest_list_tests
  OUTPUT_VARIABLE listing COMMAND_ERROR_IS_FATAL ANY)
string(REPLACE "\n" ";" lines "${listing}")
set(code "")
foreach(line IN LISTS lines)
  if(NOT line MATCHES "^([^ ]+)[.]( |$)") # the suite's tests are indented
    continue()
  endif()
  set(suite "${CMAKE_MATCH_1}")
  set(name "${prefix}${suite}")
  string(APPEND code "add_test([[${name}]] [[${program}]] [[--gtest_filter=${suite}.*]])\n"
    "set_tests_properties([[${name}]] PROPERTIES TIMEOUT ${timeout})\n")
  if(long)
    string(APPEND code "if(CTEST_CONFIGURATION_TYPE STREQUAL stress)\n"
      "  add_test([[${name}.long]] [[${program}]] [[--gtest_filter=${suite}.*]])\n"
      "  set_tests_properties([[${name}.long]] PROPERTIES LABELS stress TIMEOUT 3600\n"
      "    ENVIRONMENT [[${long}]])\n"
      "endif()\n")
  endif()
endforeach()
if(NOT code)
  message(FATAL_ERROR "${program} has no suites")
endif()
file(WRITE "${tests}" "${code}")
