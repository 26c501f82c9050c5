# Tests that use what was installed, or taken from a package, as another project does.

# brv_add_consumer_test(NAME FROM): FROM says where the tree comes from, testing/consumer/from-FROM.cmake how.
function(brv_add_consumer_test name from)
  add_test(NAME ${name}
    COMMAND "${CMAKE_COMMAND}"
      -D "from=${from}"
      -D "build=${PROJECT_BINARY_DIR}"
      -D "version=${PROJECT_VERSION}"
      -D "configuration=$<CONFIG>"
      -D "generator=${CMAKE_GENERATOR}"
      -D "compiler=${CMAKE_CXX_COMPILER}"
      -D "launcher=${CMAKE_CXX_COMPILER_LAUNCHER}"
      -D "toolchain=${CMAKE_TOOLCHAIN_FILE}"
      -D "emulator=${CMAKE_CROSSCOMPILING_EMULATOR}"
      -D "suffix=${CMAKE_EXECUTABLE_SUFFIX}"
      -D "programFolder=${CMAKE_INSTALL_BINDIR}"
      -D "libraryFolder=${CMAKE_INSTALL_LIBDIR}"
      -D "headerFolder=${CMAKE_INSTALL_INCLUDEDIR}"
      -D "pageFolder=${CMAKE_INSTALL_DOCDIR}"
      -P "${PROJECT_SOURCE_DIR}/testing/consumer/check.cmake")
  # The trees lie in the same place one after the other, so that ccache has compiled all for the second one.
  set_tests_properties(${name} PROPERTIES TIMEOUT 300 PROCESSORS 2 RESOURCE_LOCK consumer ${BRV_TEST_FIXTURE})
endfunction()

brv_add_consumer_test(install.consumer install)

if(WIN32)
  set(kind zip)
else()
  set(kind debian)
  find_program(BRV_SHLIBDEPS dpkg-shlibdeps)
  mark_as_advanced(BRV_SHLIBDEPS)
endif()
if(WIN32 OR BRV_SHLIBDEPS)
  add_test(NAME package.make COMMAND "${CMAKE_CPACK_COMMAND}" --config "${PROJECT_BINARY_DIR}/CPackConfig.cmake" -C $<CONFIG>)
  set_tests_properties(package.make PROPERTIES TIMEOUT 300 FIXTURES_SETUP packages)
  brv_add_consumer_test(package.consumer ${kind})
  set_property(TEST package.consumer APPEND PROPERTY FIXTURES_REQUIRED packages)
endif()
