# brv_add_test(NAME SOURCE... [LIBRARIES target...] [LOADS_FROM folder] [LOCKS name])
#
# A test program whose cases CTest runs one by one, each in a process of its own with a deadline. It finds libraries that it
# loads by name in the folder of LOADS_FROM. Of all cases with the same name behind LOCKS one runs at a time. CTest asks the
# program for its cases when it starts and the program is new; the first Windows program to be asked makes Wine's prefix.

set(BRV_TEST_DEADLINE 60 CACHE STRING "Seconds after which a test case counts as hanging")

function(brv_add_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "LOADS_FROM;LOCKS" "LIBRARIES")
  if(NOT BRVUTILS_BUILD_TESTS)
    return()
  endif()
  add_executable(${name} ${arg_UNPARSED_ARGUMENTS})
  target_link_libraries(${name} PRIVATE brv_testing ${arg_LIBRARIES})
  if(arg_LOADS_FROM)
    set(environment ENVIRONMENT_MODIFICATION "${BRV_LIBRARY_PATH_CHANGE}${arg_LOADS_FROM}")
  endif()
  if(arg_LOCKS)
    set(lock RESOURCE_LOCK ${arg_LOCKS})
  endif()
  gtest_discover_tests(${name} TEST_PREFIX "${name}." DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 120
    PROPERTIES TIMEOUT ${BRV_TEST_DEADLINE} ${BRV_TEST_FIXTURE} ${environment} ${lock})
endfunction()

# How a program is told where it finds libraries that it loads by name: before it starts, and by one that starts it.
if(CMAKE_CROSSCOMPILING AND WIN32)
  set(BRV_LIBRARY_PATH_CHANGE "WINEPATH=set:Z:")
  set(BRV_LIBRARY_PATH_VARIABLE PATH)
elseif(WIN32)
  set(BRV_LIBRARY_PATH_CHANGE "PATH=path_list_prepend:")
  set(BRV_LIBRARY_PATH_VARIABLE PATH)
else()
  set(BRV_LIBRARY_PATH_CHANGE "LD_LIBRARY_PATH=path_list_prepend:")
  set(BRV_LIBRARY_PATH_VARIABLE LD_LIBRARY_PATH)
endif()

if(BRVUTILS_BUILD_TESTS)
  include(GoogleTest)
  # Wine needs its prefix before the first Windows program runs, and must not leave a server behind after the last.
  if(CMAKE_CROSSCOMPILING AND WIN32)
    set(BRV_TEST_FIXTURE FIXTURES_REQUIRED wine)
  endif()
endif()
