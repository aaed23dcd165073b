# The two Debian packages that `cpack` builds, one of each component. To be included last, behind
# Install.cmake.

# What Debian alone wants isn't installed by hand, where the component decides: its own changelog and
# copyright file, and man pages compressed (without a time stamp, so that equal sources give equal
# files).
find_program(RIVENFALL_GZIP gzip REQUIRED)
set(compressed_dir ${PROJECT_BINARY_DIR}/packaging)
file(MAKE_DIRECTORY ${compressed_dir})
set(compressed_files)
foreach(file rivenfall.1 rivenfall-run.1 changelog)
  add_custom_command(
    OUTPUT ${compressed_dir}/${file}.gz
    COMMAND ${RIVENFALL_GZIP} -9nc ${packaging_dir}/${file} > ${compressed_dir}/${file}.gz
    DEPENDS ${packaging_dir}/${file}
    VERBATIM)
  list(APPEND compressed_files ${compressed_dir}/${file}.gz)
endforeach()
add_custom_target(rivenfall_compressed_files ALL DEPENDS ${compressed_files})
foreach(component rivenfall rivenfall-run)
  install(
    FILES ${compressed_dir}/${component}.1.gz
    DESTINATION ${CMAKE_INSTALL_MANDIR}/man1
    COMPONENT ${component}
    EXCLUDE_FROM_ALL)
  install(
    FILES ${compressed_dir}/changelog.gz ${packaging_dir}/copyright
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${component}
    COMPONENT ${component}
    EXCLUDE_FROM_ALL)
endforeach()

set(CPACK_PACKAGE_NAME rivenfall)
set(CPACK_PACKAGE_VENDOR "The OMRA Rivenfall Compiler Controller developers")
set(CPACK_PACKAGE_CONTACT "${CPACK_PACKAGE_VENDOR} <rivenfall@omra.org>")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_HOMEPAGE_URL https://omra.org/rivenfall)

set(CPACK_GENERATOR DEB)
set(CPACK_COMPONENTS_ALL rivenfall rivenfall-run)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PROJECT_CONFIG_FILE ${PROJECT_SOURCE_DIR}/cmake/PackagingTools.cmake)
set(CPACK_RIVENFALL_CHANGELOG ${packaging_dir}/changelog)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)

# The components' own come in its place.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(what_a_document_is
    "A document of Rivenfall keeps an ordered list of compilers, each with its
parameters and their values, and a list of variables with alternative values.
Every entry can be switched on and off.
.
A run puts the values of the variables in place, builds one command line for
each compiler that is switched on, and carries the lines out one after the
other, without a shell.
.")

set(CPACK_DEBIAN_RIVENFALL_PACKAGE_NAME rivenfall)
set(CPACK_DEBIAN_RIVENFALL_PACKAGE_RECOMMENDS "qt6-wayland")
set(CPACK_DEBIAN_RIVENFALL_PACKAGE_SUGGESTS "rivenfall-run")
set(CPACK_COMPONENT_RIVENFALL_DESCRIPTION
    "front end for a chain of command-line compilers
${what_a_document_is}
This is the desktop program, which edits a document, runs it, and shows the
output in a window while it comes.")

set(CPACK_DEBIAN_RIVENFALL-RUN_PACKAGE_NAME rivenfall-run)
set(CPACK_DEBIAN_RIVENFALL-RUN_PACKAGE_SUGGESTS "rivenfall")
set(CPACK_COMPONENT_RIVENFALL-RUN_DESCRIPTION
    "run a chain of command-line compilers from a document
${what_a_document_is}
This is the runner for terminals, scripts and machines without a screen.")

include(CPack)
