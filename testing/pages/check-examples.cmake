# Builds and runs the code of the pages as people do who have the library installed. Run by CTest.
cmake_minimum_required(VERSION 3.25)

set(work "${build}/pages")
set(tree "${work}/tree")
set(code "${work}/code")
file(REMOVE_RECURSE "${work}")

function(run)
  execute_process(COMMAND ${ARGV} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "failed: ${ARGV}\n${output}")
  endif()
  string(REPLACE "\r" "" output "${output}")
  set(output "${output}" PARENT_SCOPE)
endfunction()

foreach(component IN ITEMS runtime development)
  run("${CMAKE_COMMAND}" --install "${build}" --config "${configuration}" --component ${component} --strip --prefix "${tree}")
endforeach()

file(GLOB pages "${source}/README.md" "${source}/docs/*.md")
run("${awk}" -f "${source}/testing/pages/extract.awk" -v "folder=${code}" ${pages})
file(GLOB folders "${code}/*")

file(CONFIGURE OUTPUT "${work}/options.cmake" CONTENT [[
set(PAGES "@folders@" CACHE STRING "")
set(CMAKE_BUILD_TYPE "@configuration@" CACHE STRING "")
set(CMAKE_COMPILE_WARNING_AS_ERROR ON CACHE BOOL "")
set(CMAKE_CXX_COMPILER_LAUNCHER "@launcher@" CACHE STRING "")
]] @ONLY)
if(toolchain)
  set(where "-DCMAKE_TOOLCHAIN_FILE=${toolchain}" "-DbrvUtils_DIR=${tree}/${libraryFolder}/cmake/brvUtils")
else()
  set(where "-DCMAKE_CXX_COMPILER=${compiler}" "-DCMAKE_PREFIX_PATH=${tree}")
endif()
run("${CMAKE_COMMAND}" -C "${work}/options.cmake" -S "${source}/testing/pages/examples" -B "${work}/build" -G "${generator}" ${where})
run("${CMAKE_COMMAND}" --build "${work}/build" --config "${configuration}" --parallel 2)

# Libraries of Windows are found by PATH, which CTest has set.
set(programs "${work}/build/bin")
function(run_program name)
  run("${CMAKE_COMMAND}" -E chdir "${programs}" ${emulator} "${programs}/${name}${suffix}" ${ARGN})
  set(output "${output}" PARENT_SCOPE)
endfunction()

# Each line that a program prints is in its page. That of the README is an example, which is tested as such.
file(GLOB found RELATIVE "${programs}" "${programs}/*-program-*")
list(FILTER found EXCLUDE REGEX "^README-")
foreach(program IN LISTS found)
  string(REGEX REPLACE "-program-.*" "" page "${program}")
  get_filename_component(program "${program}" NAME_WE)
  run_program(${program})
  file(READ "${source}/docs/${page}.md" text)
  string(REGEX REPLACE "\n$" "" output "${output}")
  string(REPLACE "\n" ";" lines "${output}")
  foreach(line IN LISTS lines)
    string(FIND "${text}" "${line}" place)
    if(place EQUAL -1)
      message(SEND_ERROR "docs/${page}.md does not say that its program prints: ${line}")
    endif()
  endforeach()
endforeach()

# The pages that are a project each: their programs do what the page says.
string(RANDOM LENGTH 12 instance)
set(ENV{STUDIO_INSTANCE} "pages-${instance}")
foreach(variable IN ITEMS LOCAL_STUDIO_PATH COMPUTE_PATH STUDIO_DUMP_DIR)
  unset(ENV{${variable}})
endforeach()

set(ENV{STUDIO_PATH} "${code}/getting-started/suite")
# Both at once; what the car says is not to go to the driver.
execute_process(WORKING_DIRECTORY "${work}"
  COMMAND sh -c "exec \"$@\" >car.log 2>&1" sh ${emulator} "${programs}/car${suffix}"
  COMMAND ${emulator} "${programs}/driver${suffix}"
  RESULTS_VARIABLE results OUTPUT_VARIABLE output ERROR_VARIABLE faults TIMEOUT 120)
if(NOT results STREQUAL "0;0" OR NOT output MATCHES "driver: 5[.0-9]* m/s after")
  file(READ "${work}/car.log" car)
  message(SEND_ERROR "car and driver ended with ${results}: ${car}${output}${faults}")
endif()

run_program(brakes)
if(NOT output MATCHES "disc brakes: 8.0 m/s2")
  message(SEND_ERROR "brakes prints: ${output}")
endif()
run_program(radar)
if(NOT output STREQUAL "radar 2.1.0.7\n")
  message(SEND_ERROR "radar prints: ${output}")
endif()
