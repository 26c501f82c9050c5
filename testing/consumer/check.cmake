# Uses a tree of installed files as another project does: by find_package, and by pkg-config where the program may run as it
# is. What is expected of the files is looked at on the way. Where the tree comes from is what `from` says. Run by CTest.
cmake_minimum_required(VERSION 3.25)

set(work "${build}/consumer")
set(root "${work}/root")
set(tree "${root}/usr")
file(REMOVE_RECURSE "${work}")
file(MAKE_DIRECTORY "${work}")

function(run)
  execute_process(COMMAND ${ARGV} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "failed: ${ARGV}\n${output}")
  endif()
  set(output "${output}" PARENT_SCOPE)
endfunction()

include("${CMAKE_CURRENT_LIST_DIR}/from-${from}.cmake")
place_tree()
include("${CMAKE_CURRENT_LIST_DIR}/check-files.cmake")

# Headers: no inner ones, nothing but each other and the standard library's.
set(include "${tree}/${headerFolder}")
file(GLOB_RECURSE headers RELATIVE "${include}" "${include}/*")
foreach(header IN LISTS headers)
  if(NOT header MATCHES "\\.h$" OR header MATCHES "(^|/)(os|internal|testing)/|_test|_benchmark")
    message(SEND_ERROR "installed, but not meant for others: ${header}")
  endif()
  file(STRINGS "${include}/${header}" lines REGEX "^[ \t]*#[ \t]*include")
  foreach(line IN LISTS lines)
    string(REGEX REPLACE "^[^<\"]*[<\"]([^>\"]*).*$" "\\1" name "${line}")
    if(name IN_LIST headers)
      list(APPEND "includes of ${header}" "${name}")
    elseif(NOT name MATCHES "^[a-z_0-9]+$")
      message(SEND_ERROR "${header} includes what is neither installed nor of the standard library: ${name}")
    endif()
  endforeach()
endforeach()

# One header takes all of the library.
set(taken "")
set(next brvUtils/brvUtils.h)
while(next)
  list(POP_FRONT next header)
  if(NOT header IN_LIST taken)
    list(APPEND taken "${header}")
    list(APPEND next ${includes\ of\ ${header}})
  endif()
endwhile()
foreach(header IN LISTS headers)
  if(header MATCHES "^brvUtils/" AND NOT header IN_LIST taken)
    message(SEND_ERROR "brvUtils/brvUtils.h does not include ${header}")
  endif()
endforeach()

# By find_package: every header on its own, and a program.
string(RANDOM LENGTH 12 name)
set(name "consumer-${name}")
file(CONFIGURE OUTPUT "${work}/options.cmake" CONTENT [[
set(CONSUMER_HEADERS "@headers@" CACHE STRING "")
set(CMAKE_BUILD_TYPE "@configuration@" CACHE STRING "")
set(CMAKE_COMPILE_WARNING_AS_ERROR ON CACHE BOOL "")
set(CMAKE_CXX_COMPILER_LAUNCHER "@launcher@" CACHE STRING "")
set(CONSUMER_EXAMPLES "@tree@/@pageFolder@/examples" CACHE PATH "")
]] @ONLY)
if(toolchain)
  # A cross build looks for packages in the target system's folders only, unless told where one is.
  set(where "-DCMAKE_TOOLCHAIN_FILE=${toolchain}" "-DbrvUtils_DIR=${tree}/${libraryFolder}/cmake/brvUtils")
else()
  set(where "-DCMAKE_CXX_COMPILER=${compiler}" "-DCMAKE_PREFIX_PATH=${tree}")
endif()
run("${CMAKE_COMMAND}" -C "${work}/options.cmake" -S "${CMAKE_CURRENT_LIST_DIR}" -B "${work}/build" -G "${generator}" ${where})
run("${CMAKE_COMMAND}" --build "${work}/build" --config "${configuration}" --parallel 2)

function(expect_exchange)
  run(${ARGV} "${name}")
  if(NOT output MATCHES "consumer received 13.9")
    message(FATAL_ERROR "unexpected: ${output}")
  endif()
endfunction()

# A program of Windows also finds libraries in the folder that it is started in: here those of the tree, and no others.
file(MAKE_DIRECTORY "${tree}/${programFolder}")
expect_exchange("${CMAKE_COMMAND}" -E chdir "${tree}/${programFolder}" ${emulator} "${work}/build/bin/consumer${suffix}")

# By pkg-config, as makefiles do.
find_program(pkgConfig pkg-config)
if(pkgConfig AND NOT emulator AND NOT CMAKE_HOST_WIN32)
  set(ENV{PKG_CONFIG_LIBDIR} "${tree}/${libraryFolder}/pkgconfig")
  run("${pkgConfig}" --cflags --libs "brvUtils >= 1.6")
  separate_arguments(flags UNIX_COMMAND "${output}")
  run("${compiler}" -std=c++17 "${CMAKE_CURRENT_LIST_DIR}/main.cpp" ${flags} -o "${work}/consumer-of-pkg-config")
  set(ENV{LD_LIBRARY_PATH} "${tree}/${libraryFolder}")
  expect_exchange("${work}/consumer-of-pkg-config")
endif()

remove_tree()
