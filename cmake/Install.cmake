# What `cmake --install` puts where. To be included behind the targets.
include(GNUInstallDirs)

set(application_id org.omra.Rivenfall)
set(packaging_dir ${PROJECT_SOURCE_DIR}/packaging)

install(TARGETS rivenfall rivenfall-run)

foreach(size 16 24 32 48 128 256)
  install(
    FILES ${packaging_dir}/icons/${size}.png
    DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps
    RENAME ${application_id}.png)
endforeach()
install(
  FILES ${packaging_dir}/icons/rivenfall.svg
  DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps
  RENAME ${application_id}.svg)

install(FILES ${packaging_dir}/${application_id}.desktop
        DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${packaging_dir}/${application_id}.xml
        DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages)
install(FILES ${packaging_dir}/${application_id}.metainfo.xml
        DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)

# Man pages and the changelog are installed compressed, without a time stamp, so that equal sources
# give equal files.
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
install(FILES ${compressed_dir}/rivenfall.1.gz ${compressed_dir}/rivenfall-run.1.gz
        DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

install(FILES ${compressed_dir}/changelog.gz ${packaging_dir}/copyright
              ${PROJECT_SOURCE_DIR}/README.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(
  DIRECTORY ${PROJECT_SOURCE_DIR}/docs
  DESTINATION ${CMAKE_INSTALL_DOCDIR}
  FILES_MATCHING
  PATTERN "*.md"
  PATTERN "images/*.png")
install(
  DIRECTORY ${PROJECT_SOURCE_DIR}/examples
  DESTINATION ${CMAKE_INSTALL_DOCDIR}
  PATTERN "hello/hello" EXCLUDE)
