# What an installed Brenlox consists of, and the Debian packages of it (cpack -G DEB): the program, and beside it the
# package for Python, which works without the program.
include(GNUInstallDirs)
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME brenlox)
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
  PATTERN architecture.md EXCLUDE PATTERN porting.md EXCLUDE)  # for those who have the sources

set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL brenlox)
set(CPACK_PACKAGE_NAME brenlox)
set(CPACK_DEBIAN_BRENLOX_PACKAGE_NAME brenlox)
set(CPACK_PACKAGE_CONTACT "The Brenlox developers <brenlox@localhost>")
# The first line of each is its summary.
set(CPACK_DEBIAN_BRENLOX_DESCRIPTION "workstation for magnetotelluric field data
Brenlox keeps the readings of one MT, AMT or CSAMT survey in one database file.
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
set(CPACK_DEBIAN_BRENLOX_PACKAGE_RECOMMENDS "qt6-wayland")

# The module is of one version of Python; only that of the system is there for everybody. It is left out of what
# "cmake --install" puts under /usr/local, where Python doesn't look: pip installs it there.
if(system_python_minor)
  math(EXPR next_minor "${system_python_minor} + 1")
  set(python_folder lib/python3/dist-packages/brenlox)
  install(TARGETS brenlox_python LIBRARY DESTINATION ${python_folder} COMPONENT python EXCLUDE_FROM_ALL)
  install(DIRECTORY python/brenlox/ DESTINATION ${python_folder} COMPONENT python EXCLUDE_FROM_ALL
    FILES_MATCHING PATTERN *.py PATTERN *.pyi PATTERN py.typed PATTERN __pycache__ EXCLUDE)
  # Metadata, so that importlib.metadata and pip know what is there.
  set(metadata "${PROJECT_BINARY_DIR}/python/METADATA")
  configure_file(packaging/python/METADATA.in "${metadata}" @ONLY)
  install(FILES "${metadata}" DESTINATION lib/python3/dist-packages/brenlox-${PROJECT_VERSION}.dist-info
    COMPONENT python EXCLUDE_FROM_ALL)
  install(FILES CHANGELOG.md LICENSE DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/python3-brenlox
    COMPONENT python EXCLUDE_FROM_ALL)
  list(APPEND CPACK_COMPONENTS_ALL python)
  set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME python3-brenlox)
  set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
  set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS
    "python3 (>= 3.${system_python_minor}~), python3 (<< 3.${next_minor}), python3-numpy")
  set(CPACK_DEBIAN_PYTHON_PACKAGE_RECOMMENDS "python3-matplotlib, python3-pandas")
  set(CPACK_DEBIAN_PYTHON_PACKAGE_SUGGESTS "brenlox")
  set(CPACK_DEBIAN_PYTHON_PACKAGE_CONTROL_EXTRA
    "${PROJECT_SOURCE_DIR}/packaging/debian/python/postinst;${PROJECT_SOURCE_DIR}/packaging/debian/python/prerm")
  set(CPACK_DEBIAN_PYTHON_DESCRIPTION "magnetotelluric surveys and their numerics in Python
The Python package brenlox reads and edits the survey databases of Brenlox and
brings its numerics to scripts: impedance and phase tensors, Rho+ with a
certificate, strikes, and responses of layered and two-dimensional ground with
their sensitivities.")
endif()
include(CPack)
