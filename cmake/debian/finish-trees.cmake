# Run by CPack on the trees that become packages, one per component.
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER ${component} upper)
  set(tree "${CPACK_TEMPORARY_DIRECTORY}/${component}${CPACK_PACKAGING_INSTALL_PREFIX}")
  if(NOT IS_DIRECTORY "${tree}")
    continue()
  endif()

  # Every package has its own.
  configure_file("${CPACK_BRV_COPYRIGHT}" "${tree}/share/doc/${CPACK_DEBIAN_${upper}_PACKAGE_NAME}/copyright" COPYONLY)

  # The system knows where its libraries are: programs and libraries need not say it.
  file(GLOB_RECURSE files "${tree}/bin/*" "${tree}/lib/*.so.*")
  foreach(file IN LISTS files)
    if(NOT IS_SYMLINK "${file}")
      file(RPATH_REMOVE FILE "${file}")
    endif()
  endforeach()
endforeach()
