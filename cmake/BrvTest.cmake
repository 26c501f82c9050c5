# brv_add_test(NAME SOURCE... [LIBRARIES target...])
#
# A test program whose cases CTest runs one by one, each in a process of its own with a deadline. CTest asks the program
# for its cases when it starts and the program is new; the first Windows program to be asked makes Wine's prefix.

set(BRV_TEST_DEADLINE 60 CACHE STRING "Seconds after which a test case counts as hanging")

function(brv_add_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "LIBRARIES")
  if(NOT BRVUTILS_BUILD_TESTS)
    return()
  endif()
  add_executable(${name} ${arg_UNPARSED_ARGUMENTS})
  target_link_libraries(${name} PRIVATE brv_testing ${arg_LIBRARIES})
  gtest_discover_tests(${name} TEST_PREFIX "${name}." DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 120
    PROPERTIES TIMEOUT ${BRV_TEST_DEADLINE} ${BRV_TEST_FIXTURE})
endfunction()

if(BRVUTILS_BUILD_TESTS)
  include(GoogleTest)
  # Wine needs its prefix before the first Windows program runs, and must not leave a server behind after the last.
  if(CMAKE_CROSSCOMPILING AND WIN32)
    set(BRV_TEST_FIXTURE FIXTURES_REQUIRED wine)
  endif()
endif()
