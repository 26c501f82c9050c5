# What an installed tree holds: the library, its stand-ins, their headers, and the files by which other projects find
# them. The tree may be moved: nothing in it names the folder it was installed to.

include(CMakePackageConfigHelpers)

# A package would have to say where they are to be found, which only the project that brings them knows.
if(BRV_REAL_COMPANIONS)
  message(STATUS "brvUtils is not installed: ${BRV_REAL_COMPANIONS} are this build's own, not stand-ins")
  return()
endif()

set_target_properties(brvUtils ${BRV_STAND_INS} PROPERTIES INSTALL_RPATH "$ORIGIN")
install(TARGETS brvUtils ${BRV_STAND_INS} EXPORT brvUtilsTargets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
if(BRV_RUNTIME_LIBRARIES)
  install(FILES ${BRV_RUNTIME_LIBRARIES} DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()
# Apart from the other libraries: it takes the place of a card's own driver only for whom it is told to.
if(TARGET rfm2g)
  install(TARGETS rfm2g
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}/rfm2g
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/brvUtils/rfm2g)
  cmake_path(RELATIVE_PATH CMAKE_INSTALL_FULL_LIBDIR BASE_DIRECTORY "${CMAKE_INSTALL_FULL_BINDIR}" OUTPUT_VARIABLE libraries_from_programs)
  set_target_properties(rfm2g-card PROPERTIES INSTALL_RPATH "$ORIGIN/${libraries_from_programs}")
  install(TARGETS rfm2g-card RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

set(public_headers FILES_MATCHING PATTERN "*.h"
  PATTERN "internal" EXCLUDE PATTERN "*_test*" EXCLUDE PATTERN "*_benchmark*" EXCLUDE)
install(DIRECTORY brvUtils DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} ${public_headers} PATTERN "brvUtils/os" EXCLUDE)
foreach(companion IN LISTS BRV_STAND_INS)
  install(DIRECTORY companions/${companion} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} ${public_headers})
endforeach()

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/brvUtils)
install(EXPORT brvUtilsTargets NAMESPACE brvUtils:: DESTINATION ${package_folder})
configure_package_config_file(cmake/brvUtilsConfig.cmake.in "${PROJECT_BINARY_DIR}/package/brvUtilsConfig.cmake"
  INSTALL_DESTINATION ${package_folder} NO_SET_AND_CHECK_MACRO NO_CHECK_REQUIRED_COMPONENTS_MACRO)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/package/brvUtilsConfigVersion.cmake" COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/package/brvUtilsConfig.cmake" "${PROJECT_BINARY_DIR}/package/brvUtilsConfigVersion.cmake"
  DESTINATION ${package_folder})

if(NOT MSVC)
  cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" OUTPUT_VARIABLE package_prefix)
  set(package_libraries "-lbrvUtils")
  foreach(companion IN LISTS BRV_STAND_INS)
    string(APPEND package_libraries " -l$<TARGET_PROPERTY:${companion},OUTPUT_NAME>")
  endforeach()
  configure_file(cmake/brvUtils.pc.in "${PROJECT_BINARY_DIR}/package/brvUtils.pc.in" @ONLY)
  file(GENERATE OUTPUT "${PROJECT_BINARY_DIR}/package/brvUtils.pc" INPUT "${PROJECT_BINARY_DIR}/package/brvUtils.pc.in")
  install(FILES "${PROJECT_BINARY_DIR}/package/brvUtils.pc" DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endif()

# A sanitized library asks for a sanitized consumer, which proves nothing more.
if(BRVUTILS_BUILD_TESTS AND NOT BRVUTILS_SANITIZE)
  add_test(NAME install.consumer
    COMMAND "${CMAKE_COMMAND}"
      -D "build=${PROJECT_BINARY_DIR}"
      -D "configuration=$<CONFIG>"
      -D "generator=${CMAKE_GENERATOR}"
      -D "compiler=${CMAKE_CXX_COMPILER}"
      -D "launcher=${CMAKE_CXX_COMPILER_LAUNCHER}"
      -D "toolchain=${CMAKE_TOOLCHAIN_FILE}"
      -D "emulator=${CMAKE_CROSSCOMPILING_EMULATOR}"
      -D "program=consumer${CMAKE_EXECUTABLE_SUFFIX}"
      -D "programFolder=${CMAKE_INSTALL_BINDIR}"
      -D "libraryFolder=${CMAKE_INSTALL_LIBDIR}"
      -D "headerFolder=${CMAKE_INSTALL_INCLUDEDIR}"
      -P "${PROJECT_SOURCE_DIR}/testing/consumer/check.cmake")
  set_tests_properties(install.consumer PROPERTIES TIMEOUT 120 PROCESSORS 2 ${BRV_TEST_FIXTURE})
endif()
