# What an installed tree holds: the library, its stand-ins, their headers, the files by which other projects find them,
# programs and documentation. The tree may be moved: nothing in it names the folder it was installed to. Each file belongs
# to one of the components runtime, development, tools and documentation, which BrvPackage makes packages of.

include(CMakePackageConfigHelpers)

# A package would have to say where they are to be found, which only the project that brings them knows.
if(BRV_REAL_COMPANIONS)
  message(STATUS "brvUtils is not installed: ${BRV_REAL_COMPANIONS} are this build's own, not stand-ins")
  return()
endif()

# The libraries lie side by side before they are installed, too. CMake would keep room for the path by empty parts, which stand
# for the current folder.
set_target_properties(brvUtils ${BRV_STAND_INS} PROPERTIES INSTALL_RPATH "$ORIGIN" BUILD_WITH_INSTALL_RPATH ON)
install(TARGETS brvUtils ${BRV_STAND_INS} EXPORT brvUtilsTargets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
if(TARGET brvUtilsMat)
  install(TARGETS brvUtilsMat LIBRARY DESTINATION $<IF:$<BOOL:${WIN32}>,${CMAKE_INSTALL_BINDIR},${CMAKE_INSTALL_LIBDIR}> COMPONENT runtime)
endif()
if(BRV_RUNTIME_LIBRARIES)
  install(FILES ${BRV_RUNTIME_LIBRARIES} DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime)
endif()

# Apart from the other libraries: it takes the place of a card's own driver only for whom it is told to.
if(TARGET rfm2g)
  install(TARGETS rfm2g
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}/rfm2g COMPONENT tools
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/brvUtils/rfm2g COMPONENT tools)
  list(APPEND BRV_INSTALLED_PROGRAMS rfm2g)
endif()
cmake_path(RELATIVE_PATH CMAKE_INSTALL_FULL_LIBDIR BASE_DIRECTORY "${CMAKE_INSTALL_FULL_BINDIR}" OUTPUT_VARIABLE libraries_from_programs)
foreach(program IN ITEMS brv_program rfm2g-card)
  if(TARGET ${program})
    set_target_properties(${program} PROPERTIES INSTALL_RPATH "$ORIGIN/${libraries_from_programs}")
    install(TARGETS ${program} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tools)
    list(APPEND BRV_INSTALLED_PROGRAMS ${program})
  endif()
endforeach()

set(public_headers FILES_MATCHING PATTERN "*.h"
  PATTERN "internal" EXCLUDE PATTERN "*_test*" EXCLUDE PATTERN "*_benchmark*" EXCLUDE)
install(DIRECTORY brvUtils DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development ${public_headers} PATTERN "brvUtils/os" EXCLUDE)
foreach(companion IN LISTS BRV_STAND_INS)
  install(DIRECTORY companions/${companion} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development ${public_headers})
endforeach()

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/brvUtils)
install(EXPORT brvUtilsTargets NAMESPACE brvUtils:: DESTINATION ${package_folder} COMPONENT development)
configure_package_config_file(cmake/brvUtilsConfig.cmake.in "${PROJECT_BINARY_DIR}/package/brvUtilsConfig.cmake"
  INSTALL_DESTINATION ${package_folder} NO_SET_AND_CHECK_MACRO NO_CHECK_REQUIRED_COMPONENTS_MACRO)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/package/brvUtilsConfigVersion.cmake" COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/package/brvUtilsConfig.cmake" "${PROJECT_BINARY_DIR}/package/brvUtilsConfigVersion.cmake"
  DESTINATION ${package_folder} COMPONENT development)
install(FILES cmake/BrvVersionInfo.cmake cmake/BrvVersionInfo.cpp.in cmake/BrvVersionInfo.rc.in DESTINATION ${package_folder} COMPONENT development)

if(NOT MSVC)
  cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" OUTPUT_VARIABLE package_prefix)
  set(package_libraries "-lbrvUtils")
  foreach(companion IN LISTS BRV_STAND_INS)
    string(APPEND package_libraries " -l$<TARGET_PROPERTY:${companion},OUTPUT_NAME>")
  endforeach()
  configure_file(cmake/brvUtils.pc.in "${PROJECT_BINARY_DIR}/package/brvUtils.pc.in" @ONLY)
  file(GENERATE OUTPUT "${PROJECT_BINARY_DIR}/package/brvUtils.pc" INPUT "${PROJECT_BINARY_DIR}/package/brvUtils.pc.in")
  install(FILES "${PROJECT_BINARY_DIR}/package/brvUtils.pc" DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
endif()

# Pages and examples lie to each other as they do here, so that their links hold. The examples build by themselves.
install(FILES README.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documentation)
install(DIRECTORY docs examples DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documentation
  PATTERN "*_test*" EXCLUDE PATTERN "check-*.cmake" EXCLUDE PATTERN "*.in" EXCLUDE)
install(FILES drivers/rfm2g/README.md DESTINATION ${CMAKE_INSTALL_DOCDIR}/drivers/rfm2g COMPONENT documentation)
