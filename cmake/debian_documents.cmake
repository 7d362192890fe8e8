# Run by CPack on the trees that become the packages: documents in the form in which Debian keeps them, and folders
# that everybody can read, whatever umask the builder has.
set(packaging ${CMAKE_CURRENT_LIST_DIR}/../packaging)
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)

foreach(component ${CPACK_COMPONENTS_ALL})
  string(TOUPPER ${component} name)
  set(package ${CPACK_DEBIAN_${name}_PACKAGE_NAME})
  set(root ${CPACK_TEMPORARY_DIRECTORY}/${component}${CPACK_PACKAGING_INSTALL_PREFIX})
  set(documents ${root}/share/doc/${package})
  file(REMOVE ${documents}/LICENSE)  # every Debian has its text
  configure_file(${packaging}/debian/copyright.in ${documents}/copyright @ONLY)
  file(RENAME ${documents}/CHANGELOG.md ${documents}/changelog)
  configure_file(${packaging}/debian/changelog.in ${documents}/changelog.Debian @ONLY)
  file(GLOB pages ${root}/share/man/man1/*.1)
  execute_process(COMMAND gzip -9n ${documents}/changelog ${documents}/changelog.Debian ${pages}
    COMMAND_ERROR_IS_FATAL ANY)
endforeach()

file(GLOB_RECURSE entries LIST_DIRECTORIES true ${CPACK_TEMPORARY_DIRECTORY}/*)
foreach(entry ${CPACK_TEMPORARY_DIRECTORY} ${entries})
  if(IS_DIRECTORY ${entry})
    file(CHMOD ${entry} PERMISSIONS
      OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
  endif()
endforeach()
