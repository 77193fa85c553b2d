# SPDX-License-Identifier: MIT
# add_binding_module(name TABLES library): an extension module for Python that exports what the
# exports.map beside it says. It has its own copy of the runtime; `library` has its tables.
function(add_binding_module name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "TABLES" "")
  add_library(${name} MODULE ${name}.cpp ${OPENQUIL_COVERAGE_SOURCE})
  target_link_libraries(${name} PRIVATE ${arg_TABLES} runtime OpenQuilRender OpenQuil
    OpenQuilScripting OpenQuilFoundation)
  # The interpreter's symbols come from the process that loads the module.
  set_target_properties(${name} PROPERTIES
    PREFIX ""
    LIBRARY_OUTPUT_DIRECTORY "${OPENQUIL_PYTHON_DIR}"
    LINK_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/exports.map")
  target_link_options(${name} PRIVATE
    "-Wl,--version-script=${CMAKE_CURRENT_SOURCE_DIR}/exports.map")
endfunction()
