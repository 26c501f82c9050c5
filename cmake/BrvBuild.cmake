# What every target of the project is built with.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

# Options of projects that are built within this one (GoogleTest) may be set by plain variables.
set(CMAKE_POLICY_DEFAULT_CMP0077 NEW)

# Programs and libraries side by side: on Windows a program finds its libraries in its own folder.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")

if(PROJECT_IS_TOP_LEVEL AND NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "" FORCE)
endif()

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CCACHE_PROGRAM}")
endif()

if(MSVC)
  # 4251 and 4275 warn of standard classes in the interface of a shared library: caller and library are built with the same
  # compiler and run-time library, as they must be for these anyway.
  add_compile_options(/W4 /permissive- /utf-8 /Zc:__cplusplus /wd4251 /wd4275)
  add_compile_definitions(_CRT_SECURE_NO_WARNINGS)
else()
  add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align -Wformat=2)
  if(NOT WIN32)
    # A library's calls of its own exported functions are direct, and may be inlined, as on Windows.
    add_compile_options(-fno-semantic-interposition)
    add_link_options(-Wl,-Bsymbolic-functions)
  endif()
endif()

set(BRVUTILS_SANITIZE "" CACHE STRING "Sanitizers to build with, as the compiler spells them (address,undefined or thread)")
if(BRVUTILS_SANITIZE)
  add_compile_options(-fsanitize=${BRVUTILS_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${BRVUTILS_SANITIZE})
endif()

# Header-only packages. A cross build must not see the whole include folder of the build system, so they reach it
# through a folder that holds a link per package.
add_library(brv_header_packages INTERFACE)
if(CMAKE_CROSSCOMPILING)
  set(links "${PROJECT_BINARY_DIR}/header-packages")
  file(MAKE_DIRECTORY "${links}")
  foreach(package IN ITEMS boost rapidxml CLI fast_float fmt nlohmann)
    find_path(brv_${package}_parent ${package} PATHS /usr/include NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
    if(brv_${package}_parent)
      file(CREATE_LINK "${brv_${package}_parent}/${package}" "${links}/${package}" SYMBOLIC)
    endif()
  endforeach()
  target_include_directories(brv_header_packages SYSTEM INTERFACE "${links}")
else()
  find_package(Boost 1.81 REQUIRED)
  target_link_libraries(brv_header_packages INTERFACE Boost::headers)
endif()

# The compiler's run-time libraries, beside the programs that need them.
if(MINGW)
  execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=libstdc++-6.dll OUTPUT_VARIABLE stdcxx OUTPUT_STRIP_TRAILING_WHITESPACE)
  execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=libgcc_s_seh-1.dll OUTPUT_VARIABLE gcc OUTPUT_STRIP_TRAILING_WHITESPACE)
  execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=libwinpthread-1.dll OUTPUT_VARIABLE pthread OUTPUT_STRIP_TRAILING_WHITESPACE)
  set(BRV_RUNTIME_LIBRARIES "${stdcxx}" "${gcc}" "${pthread}")
  file(COPY ${BRV_RUNTIME_LIBRARIES} DESTINATION "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
endif()
