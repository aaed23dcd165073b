# What `cmake --install` puts where, in two components, which Packaging.cmake makes packages of. To be
# included behind the targets.
include(GNUInstallDirs)

set(application_id org.omra.Rivenfall)
set(packaging_dir ${PROJECT_SOURCE_DIR}/packaging)
set(icons_dir ${CMAKE_INSTALL_DATADIR}/icons/hicolor)

install(TARGETS rivenfall COMPONENT rivenfall)
install(TARGETS rivenfall-run COMPONENT rivenfall-run)
# The folders are those of Debian, where the shells look themselves.
set(completions_dir ${packaging_dir}/completions)
install(
  FILES ${completions_dir}/rivenfall-run.bash
  DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
  RENAME rivenfall-run
  COMPONENT rivenfall-run)
install(
  FILES ${completions_dir}/rivenfall-run.zsh
  DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions
  RENAME _rivenfall-run
  COMPONENT rivenfall-run)
install(
  FILES ${completions_dir}/rivenfall-run.fish
  DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d
  COMPONENT rivenfall-run)

# Installs a picture as the program's icon and another as that of its documents.
function(install_icons folder program_picture document_picture extension)
  install(
    FILES ${packaging_dir}/icons/${program_picture}
    DESTINATION ${icons_dir}/${folder}/apps
    RENAME ${application_id}.${extension}
    COMPONENT rivenfall)
  install(
    FILES ${packaging_dir}/icons/${document_picture}
    DESTINATION ${icons_dir}/${folder}/mimetypes
    RENAME application-x-rivenfall-document.${extension}
    COMPONENT rivenfall)
endfunction()

foreach(size 16 24 32 48 128 256)
  install_icons(${size}x${size} ${size}.png document-${size}.png png)
endforeach()
install_icons(scalable rivenfall.svg document.svg svg)

install(
  FILES ${packaging_dir}/${application_id}.desktop
  DESTINATION ${CMAKE_INSTALL_DATADIR}/applications
  COMPONENT rivenfall)
install(
  FILES ${packaging_dir}/${application_id}.xml
  DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages
  COMPONENT rivenfall)
install(
  FILES ${packaging_dir}/${application_id}.metainfo.xml
  DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo
  COMPONENT rivenfall)

# Each file by its name: what a run of the example leaves beside it stays where it is.
set(docs_dir ${PROJECT_SOURCE_DIR}/docs)
install(
  FILES ${PROJECT_SOURCE_DIR}/README.md ${PROJECT_SOURCE_DIR}/CHANGELOG.md
        ${PROJECT_SOURCE_DIR}/CONTRIBUTING.md
  DESTINATION ${CMAKE_INSTALL_DOCDIR}
  COMPONENT rivenfall)
install(
  FILES ${PROJECT_SOURCE_DIR}/bench/README.md
  DESTINATION ${CMAKE_INSTALL_DOCDIR}/bench
  COMPONENT rivenfall)
install(
  DIRECTORY ${docs_dir}
  DESTINATION ${CMAKE_INSTALL_DOCDIR}
  COMPONENT rivenfall
  FILES_MATCHING
  PATTERN "*.md"
  PATTERN "images/*.png")
set(example_dir ${PROJECT_SOURCE_DIR}/examples/hello)
foreach(component rivenfall rivenfall-run)
  install(
    FILES ${example_dir}/README.md ${example_dir}/hello.c ${example_dir}/hello.tvq
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${component}/examples/hello
    COMPONENT ${component})
endforeach()

# The rest differs between a package and an installation by hand: this component is in no package.
# Debian has the licence in a file of its own form.
install(
  FILES ${PROJECT_SOURCE_DIR}/LICENSE
  DESTINATION ${CMAKE_INSTALL_DOCDIR}
  COMPONENT by-hand)
install(
  FILES ${packaging_dir}/rivenfall.1 ${packaging_dir}/rivenfall-run.1
  DESTINATION ${CMAKE_INSTALL_MANDIR}/man1
  COMPONENT by-hand)
# A package leaves this to Debian's triggers, and whoever installs into a staging folder to others.
install(
  CODE [[
  if("$ENV{DESTDIR}" STREQUAL "")
    include("${CMAKE_CURRENT_LIST_DIR}/refresh-desktop.cmake")
  endif()]]
  COMPONENT by-hand)
file(
  CONFIGURE
  OUTPUT refresh-desktop.cmake
  CONTENT
    [[# Tells the desktop of the new file type, menu entry and icons, by those tools that are there.
set(data_dir "${CMAKE_INSTALL_PREFIX}/@CMAKE_INSTALL_DATADIR@")
foreach(call "update-mime-database;${data_dir}/mime"
        "update-desktop-database;-q;${data_dir}/applications")
  execute_process(COMMAND ${call} RESULT_VARIABLE failure OUTPUT_QUIET ERROR_QUIET)
  if(failure)
    list(JOIN call " " line)
    message(STATUS "Not done, and needed for the file type: ${line}")
  endif()
endforeach()
# Where there is such a cache, a desktop looks there alone.
if(EXISTS "${data_dir}/icons/hicolor/icon-theme.cache")
  execute_process(COMMAND gtk-update-icon-cache -qtf "${data_dir}/icons/hicolor" ERROR_QUIET)
endif()
]]
  @ONLY)
