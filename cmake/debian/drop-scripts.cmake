# Run by CPack on the packages. It gives those with libraries scripts that call ldconfig, which their trigger does already:
# packed again without, they run nothing when they are installed or removed.
foreach(package IN LISTS CPACK_PACKAGE_FILES)
  set(tree "${package}.tree")
  file(REMOVE_RECURSE "${tree}")
  execute_process(COMMAND dpkg-deb --raw-extract "${package}" "${tree}" COMMAND_ERROR_IS_FATAL ANY)
  file(REMOVE "${tree}/DEBIAN/postinst" "${tree}/DEBIAN/postrm")
  execute_process(COMMAND dpkg-deb --root-owner-group --build "${tree}" "${package}" OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
  file(REMOVE_RECURSE "${tree}")
endforeach()
