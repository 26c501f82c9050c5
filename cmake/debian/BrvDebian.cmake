# What CPack has to know for Debian's packages: names, descriptions, and what depends on what.

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SOURCE brvutils)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # each has its own
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)

# brv_debian_package(COMPONENT NAME SECTION SUMMARY DESCRIPTION): it comes with the copyright of all.
macro(brv_debian_package component name section summary description)
  string(TOUPPER ${component} upper)
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${name})
  set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section})
  set(CPACK_DEBIAN_${upper}_DESCRIPTION "${summary}\n${description}")
endmacro()

# The name changes with the soname, so that programs of two generations find theirs side by side.
brv_debian_package(runtime libbrvutils${PROJECT_VERSION_MAJOR} libs "shared library of a driving-simulation suite"
  "Named semaphores, events, shared memory, configuration, threads and\nrecorded data for the modules of a distributed driving-simulation suite.")
brv_debian_package(development libbrvutils-dev libdevel "shared library of a driving-simulation suite - development files"
  "Headers, and what CMake and pkg-config need to build modules with the library.")
brv_debian_package(tools brvutils utils "programs for people who run a driving-simulation suite"
  "What looks at the suite's configurations, named objects and recordings,\nand a reflective-memory card made of software.")
brv_debian_package(documentation brvutils-doc doc "shared library of a driving-simulation suite - documentation"
  "How the library works, how it is used, and the sources of a small suite\nthat uses it.")
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_ARCHITECTURE all)

set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS runtime)
set(CPACK_COMPONENT_TOOLS_DEPENDS runtime)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS brvutils-doc)

# What the packages of others' programs depend on, by soname. The trigger has the system learn of the libraries.
set(shlibs "")
foreach(library IN ITEMS brvUtils ${BRV_STAND_INS})
  string(APPEND shlibs
    "lib$<TARGET_FILE_BASE_NAME:${library}> ${PROJECT_VERSION_MAJOR} libbrvutils${PROJECT_VERSION_MAJOR} (>= ${PROJECT_VERSION})\n")
endforeach()
file(GENERATE OUTPUT "${PROJECT_BINARY_DIR}/package/shlibs" CONTENT "${shlibs}")
file(WRITE "${PROJECT_BINARY_DIR}/package/triggers" "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA "${PROJECT_BINARY_DIR}/package/shlibs" "${PROJECT_BINARY_DIR}/package/triggers")

set(CPACK_BRV_COPYRIGHT "${PROJECT_BINARY_DIR}/package/copyright")
set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_CURRENT_LIST_DIR}/finish-trees.cmake")
set(CPACK_POST_BUILD_SCRIPTS "${CMAKE_CURRENT_LIST_DIR}/drop-scripts.cmake")
