# Where files are installed: as GNUInstallDirs says, but on Debian always where its packages have libraries, so that one build
# makes both an installed tree and packages.
if(EXISTS /etc/debian_version AND NOT CMAKE_CROSSCOMPILING AND CMAKE_LIBRARY_ARCHITECTURE)
  set(CMAKE_INSTALL_LIBDIR "lib/${CMAKE_LIBRARY_ARCHITECTURE}" CACHE PATH "Libraries, below the prefix")
endif()
include(GNUInstallDirs)
