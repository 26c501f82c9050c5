# Packages of what BrvInstall installs, made by CPack, as scripts/package does: for Debian one of each component, for Windows
# a .zip of all. They go to packages/ in the build folder.

if(BRV_REAL_COMPANIONS)
  return()
endif()
include(BrvCopyright)
install(FILES "${PROJECT_BINARY_DIR}/package/copyright" DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documentation)

# What has to be built before it is packed. CPack itself would build the tests as well.
add_custom_target(installed DEPENDS brvUtils ${BRV_STAND_INS} ${BRV_INSTALLED_PROGRAMS})
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON)

set(CPACK_PACKAGE_NAME ${PROJECT_NAME})
set(CPACK_PACKAGE_VENDOR "The ${PROJECT_NAME} developers")
set(BRVUTILS_PACKAGE_CONTACT "The ${PROJECT_NAME} developers" CACHE STRING "Who answers for the packages: name, and address in angle brackets")
set(CPACK_PACKAGE_CONTACT "${BRVUTILS_PACKAGE_CONTACT}")
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}/packages")
set(CPACK_SOURCE_GENERATOR "")
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_COMPONENTS_ALL runtime development tools documentation)
if(WIN32)
  set(CPACK_GENERATOR ZIP)
  set(CPACK_PACKAGE_FILE_NAME ${PROJECT_NAME}-${PROJECT_VERSION}-windows-x64)
else()
  set(CPACK_GENERATOR DEB)
  include(debian/BrvDebian)
endif()
include(CPack)

# A sanitized library asks for a sanitized consumer, which proves nothing more.
if(BRVUTILS_BUILD_TESTS AND NOT BRVUTILS_SANITIZE)
  include(BrvConsumerTest)
endif()
