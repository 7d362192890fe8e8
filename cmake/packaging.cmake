# What an installed Brenlox consists of, and the Debian package of it (cpack -G DEB).
include(GNUInstallDirs)

if(BRENLOX_WINDOWS)
  install(TARGETS brenlox RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(FILES packaging/brenlox.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
  install(FILES packaging/brenlox.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
  install(FILES packaging/brenlox-survey.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages)
endif()
install(TARGETS brenlox_batch RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES README.md CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} RENAME copyright)
install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/docs)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME brenlox)
set(CPACK_PACKAGE_CONTACT "The Brenlox developers <brenlox@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "workstation for magnetotelluric field data")
set(CPACK_PACKAGE_DESCRIPTION
    "Keeps the readings of one MT, AMT or CSAMT survey in one database file: imports field files, shows and masks
readings by station and line, averages repeats, merges scan rates, and hands the reduced curves to
interpretation.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-qpa-plugins")  # the windows' platform, which is loaded at run time
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-wayland")
include(CPack)
