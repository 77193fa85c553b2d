# SPDX-License-Identifier: MIT
# What `make install` and `make package` install. PREFIX/lib/openquil has the folders of a build, bin,
# lib and python, so that programs, libraries and modules find one another there as they do in a
# build, wherever the prefix is; bin has links to the programs.
set(home lib/openquil)

set(installed_programs quilhost quilfarm)
set(installed_libraries OpenQuilFoundation OpenQuilScripting OpenQuil OpenQuilRender)
set(installed_modules _OpenQuil _OpenQuilRender)

# The loader looks into the system's own folders by itself.
set(program_path "$ORIGIN/../lib")
get_target_property(interpreter_library Python2::Interpreter IMPORTED_LOCATION)
cmake_path(GET interpreter_library PARENT_PATH interpreter_folder)
if(NOT interpreter_folder MATCHES "^(/usr)?/lib(/|$)")
  list(APPEND program_path "${interpreter_folder}")
endif()
set_target_properties(${installed_programs} PROPERTIES INSTALL_RPATH "${program_path}")
set_target_properties(${installed_modules} PROPERTIES INSTALL_RPATH "$ORIGIN/../lib")
set_target_properties(${installed_libraries} script_drawing PROPERTIES INSTALL_RPATH "$ORIGIN")
# A path for the build alone would end in an empty folder, which CMake adds to tell the two apart:
# the loader takes it for the current folder.
set_target_properties(${installed_programs} ${installed_modules} ${installed_libraries}
  script_drawing PROPERTIES BUILD_WITH_INSTALL_RPATH ON)
install(TARGETS ${installed_programs} DESTINATION ${home}/bin)
install(TARGETS ${installed_modules} _openquil_proxy DESTINATION ${home}/python)
install(TARGETS script_drawing DESTINATION ${home}/lib)
foreach(program IN LISTS installed_programs)
  install(CODE "
    set(folder \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/bin\")
    file(MAKE_DIRECTORY \"\${folder}\")
    file(CREATE_LINK ../${home}/bin/${program} \"\${folder}/${program}\" SYMBOLIC)
    list(APPEND CMAKE_INSTALL_MANIFEST_FILES \"\${CMAKE_INSTALL_PREFIX}/bin/${program}\")")
endforeach()

# Python files, and their compiled forms, which name the place where they are installed.
install(DIRECTORY "${OPENQUIL_PYTHON_DIR}/" DESTINATION ${home}/python
  FILES_MATCHING PATTERN "*.py" PATTERN "*.pyi")
install(CODE "
  set(folder \"\${CMAKE_INSTALL_PREFIX}/${home}/python\")
  execute_process(COMMAND \"${PYTHON2_EXECUTABLE}\" -c
    \"import compileall, sys; compileall.compile_dir(sys.argv[1], ddir=sys.argv[2], force=True, quiet=True)\"
    \"\$ENV{DESTDIR}\${folder}\" \"\${folder}\" COMMAND_ERROR_IS_FATAL ANY)
  file(GLOB compiled RELATIVE \"\$ENV{DESTDIR}\${folder}\" \"\$ENV{DESTDIR}\${folder}/*.pyc\")
  list(TRANSFORM compiled PREPEND \"\${folder}/\")
  list(APPEND CMAKE_INSTALL_MANIFEST_FILES \${compiled})")

# For native plug-ins: the host's headers and the libraries, as targets of the package OpenQuil.
install(DIRECTORY "${CMAKE_SOURCE_DIR}/host" DESTINATION include/openquil
  FILES_MATCHING PATTERN "*.h" PATTERN "*.def")
install(FILES devhost/app/PluginInterface.h DESTINATION include/openquil/devhost/app)
target_include_directories(OpenQuilFoundation INTERFACE "$<INSTALL_INTERFACE:include/openquil>")
install(TARGETS ${installed_libraries} EXPORT OpenQuilTargets DESTINATION ${home}/lib)
install(EXPORT OpenQuilTargets NAMESPACE OpenQuil:: DESTINATION lib/cmake/OpenQuil)
include(CMakePackageConfigHelpers)
configure_package_config_file(cmake/OpenQuilConfig.cmake.in
  "${CMAKE_BINARY_DIR}/cmake/OpenQuilConfig.cmake" INSTALL_DESTINATION lib/cmake/OpenQuil)
write_basic_package_version_file("${CMAKE_BINARY_DIR}/cmake/OpenQuilConfigVersion.cmake"
  COMPATIBILITY SameMinorVersion)
install(FILES "${CMAKE_BINARY_DIR}/cmake/OpenQuilConfig.cmake"
  "${CMAKE_BINARY_DIR}/cmake/OpenQuilConfigVersion.cmake" DESTINATION lib/cmake/OpenQuil)

# Manual pages are what --help says.
find_program(HELP2MAN help2man)
if(HELP2MAN)
  set(quilhost_purpose "render scenes and run render scripts without the host application")
  set(quilfarm_purpose "render frame ranges and large stills on more than one machine")
  foreach(program IN LISTS installed_programs)
    set(page "${CMAKE_BINARY_DIR}/man/${program}.1")
    add_custom_command(OUTPUT "${page}"
      COMMAND "${CMAKE_COMMAND}" -E make_directory "${CMAKE_BINARY_DIR}/man"
      COMMAND "${HELP2MAN}" --no-info --section 1 --source "OpenQuilRender ${PROJECT_VERSION}"
        --name "${${program}_purpose}" --output "${page}" "$<TARGET_FILE:${program}>"
      DEPENDS ${program}
      VERBATIM)
    list(APPEND man_pages "${page}")
  endforeach()
  add_custom_target(man_pages ALL DEPENDS ${man_pages})
  install(FILES ${man_pages} DESTINATION share/man/man1)
endif()

# The function of Debian's bash-completion that reads the options out of --help.
foreach(program IN LISTS installed_programs)
  file(WRITE "${CMAKE_BINARY_DIR}/completions/${program}" "complete -F _longopt ${program}\n")
endforeach()
install(DIRECTORY "${CMAKE_BINARY_DIR}/completions/"
  DESTINATION share/bash-completion/completions)

install(FILES README.md CHANGELOG.md LICENSE DESTINATION share/doc/openquil)
install(DIRECTORY docs/ DESTINATION share/doc/openquil/docs PATTERN site EXCLUDE)
# The site, where `make docs` has made it.
install(DIRECTORY "${CMAKE_BINARY_DIR}/docs/html" DESTINATION share/doc/openquil OPTIONAL)
install(DIRECTORY examples DESTINATION share/openquil)

# The Debian package.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME openquil)
set(CPACK_PACKAGE_CONTACT "OpenQuilRender developers <openquil@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${quilhost_purpose}")
set(CPACK_PACKAGE_DESCRIPTION
  "The scripting binding of the render programming interface, and a development host for its scripts.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
# What is loaded by name.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "libgl1-mesa-dri, bash-completion")
if(PYTHON2_EXECUTABLE MATCHES "^/usr/bin/")
  set(CPACK_DEBIAN_PACKAGE_DEPENDS python2.7)
endif()
include(CPack)
