# SPDX-License-Identifier: MIT
# Finds a UCS4 Python 2.7 with a shared library and defines:
#   Python2::Headers      include directory only, for extension modules (they take the
#                         interpreter's symbols from the process that loads them)
#   Python2::Interpreter  headers and the shared library, for programs that embed it
#   PYTHON2_EXECUTABLE    the python2.7 program
#
# tools/setup.sh finds or builds the interpreter and leaves its path in build/python2.path.
set(PYTHON2_EXECUTABLE "" CACHE FILEPATH "the python2.7 program to build for")
if(NOT PYTHON2_EXECUTABLE AND EXISTS "${CMAKE_SOURCE_DIR}/build/python2.path")
  file(STRINGS "${CMAKE_SOURCE_DIR}/build/python2.path" PYTHON2_EXECUTABLE LIMIT_COUNT 1)
  set_property(DIRECTORY APPEND PROPERTY
    CMAKE_CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/build/python2.path")
endif()
if(NOT PYTHON2_EXECUTABLE)
  message(FATAL_ERROR "No Python 2.7 known: run tools/setup.sh first, or set PYTHON2_EXECUTABLE")
endif()

execute_process(
  COMMAND "${PYTHON2_EXECUTABLE}" -c "
import os, sys, sysconfig as s
v = s.get_config_var
# Distributions keep the library in a folder of the architecture.
folders = [v('LIBDIR'), os.path.join(v('LIBDIR'), v('MULTIARCH') or '')]
folder = ([f for f in folders if os.path.exists(os.path.join(f, v('LDLIBRARY')))] + folders)[0]
print(';'.join([v('INCLUDEPY'), folder, v('LDLIBRARY'), str(sys.maxunicode), str(v('Py_ENABLE_SHARED')), v('prefix')]))"
  OUTPUT_VARIABLE _python2 OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
list(GET _python2 0 _include)
list(GET _python2 1 _libdir)
list(GET _python2 2 _library)
list(GET _python2 3 _maxunicode)
list(GET _python2 4 _shared)
list(GET _python2 5 PYTHON2_HOME)
if(NOT _maxunicode EQUAL 1114111)
  message(FATAL_ERROR "${PYTHON2_EXECUTABLE} is a UCS2 build; the host interpreter is UCS4")
endif()
if(NOT _shared EQUAL 1)
  message(FATAL_ERROR "${PYTHON2_EXECUTABLE} has no shared library (--enable-shared)")
endif()

add_library(Python2::Headers INTERFACE IMPORTED)
# As system headers: they use the register keyword, which C++17 removed.
target_include_directories(Python2::Headers SYSTEM INTERFACE "${_include}")
add_library(Python2::Interpreter SHARED IMPORTED)
set_target_properties(Python2::Interpreter PROPERTIES
  IMPORTED_LOCATION "${_libdir}/${_library}"
  INTERFACE_LINK_LIBRARIES Python2::Headers)
