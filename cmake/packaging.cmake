# What an installed Brenlox consists of, and the Debian package of it (cpack -G DEB).
include(GNUInstallDirs)
set(documents ${CMAKE_INSTALL_DATADIR}/doc/brenlox)  # as the package is called

if(BRENLOX_WINDOWS)
  install(TARGETS brenlox RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(FILES packaging/brenlox.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
  install(FILES packaging/brenlox.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
  # For desktops without a reader of SVG.
  install(FILES packaging/brenlox_48.png DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/48x48/apps
    RENAME brenlox.png)
  install(FILES packaging/brenlox.png DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/128x128/apps)
  install(FILES packaging/brenlox.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages)
  install(FILES packaging/man/brenlox.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endif()
install(TARGETS brenlox_batch brenlox_make_samples RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES packaging/man/brenlox_batch.1 packaging/man/brenlox_make_samples.1
  DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES CHANGELOG.md LICENSE DESTINATION ${documents})
install(DIRECTORY docs/ DESTINATION ${documents}
  PATTERN architecture.md EXCLUDE)  # for those who have the sources

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME brenlox)
set(CPACK_PACKAGE_CONTACT "The Brenlox developers <brenlox@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "workstation for magnetotelluric field data")
set(CPACK_PACKAGE_DESCRIPTION
    "Brenlox keeps the readings of one MT, AMT or CSAMT survey in one database file.
It imports field files, shows and masks readings by station and line,
averages repeats, merges scan rates, and inverts the reduced curves in one and
two dimensions or hands them to other programs.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/debian_documents.cmake)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
# The windows' platform for X, which is loaded at run time, comes with libqt6gui6; that for Wayland is apart.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-wayland")
include(CPack)
