# The Debian package that `cpack -G DEB` builds. To be included last, behind Install.cmake.
set(CPACK_PACKAGE_NAME rivenfall)
set(CPACK_PACKAGE_VENDOR "The OMRA Rivenfall Compiler Controller developers")
set(CPACK_PACKAGE_CONTACT "${CPACK_PACKAGE_VENDOR} <rivenfall@omra.org>")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_HOMEPAGE_URL https://omra.org/rivenfall)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "front end for a chain of command-line compilers")
set(CPACK_PACKAGE_DESCRIPTION
    "Rivenfall keeps an ordered list of compilers, each with its parameters and
their values, and a list of variables with alternative values in one
document. Every entry can be switched on and off.
.
A run puts the values of the variables in place, builds one command line for
each compiler that is switched on, and carries the lines out one after the
other, while a window shows their output.
.
The program rivenfall edits and runs a document on a desktop; rivenfall-run
runs it from a terminal or a script.")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-wayland")
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)

include(CPack)
