# brv_add_fuzzer(NAME SOURCE... [LIBRARIES target...])
#
# SOURCE has LLVMFuzzerTestOneInput; the folder fuzz/NAME beside it holds a few small inputs to start from. Clang makes a
# fuzzer of it (BRVUTILS_BUILD_FUZZERS) that scripts/fuzz runs. With any compiler a test gives it these inputs, cut and
# damaged ones as well.

option(BRVUTILS_BUILD_FUZZERS "Build the fuzzers; needs Clang, and fuzzer-no-link in BRVUTILS_SANITIZE" OFF)

function(brv_add_fuzzer name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "LIBRARIES")
  if(BRVUTILS_BUILD_FUZZERS)
    add_executable(fuzz_${name} ${arg_UNPARSED_ARGUMENTS})
    target_link_libraries(fuzz_${name} PRIVATE ${arg_LIBRARIES})
    target_link_options(fuzz_${name} PRIVATE -fsanitize=fuzzer)
  endif()
  if(BRVUTILS_BUILD_TESTS)
    add_executable(replay_${name} ${arg_UNPARSED_ARGUMENTS} "${PROJECT_SOURCE_DIR}/testing/FuzzReplay.cpp")
    target_link_libraries(replay_${name} PRIVATE ${arg_LIBRARIES})
    add_test(NAME replay.${name}
      COMMAND replay_${name} "$<$<BOOL:${CMAKE_CROSSCOMPILING}>:Z:>${CMAKE_CURRENT_SOURCE_DIR}/fuzz/${name}")
    set_tests_properties(replay.${name} PROPERTIES TIMEOUT ${BRV_TEST_DEADLINE} ${BRV_TEST_FIXTURE})
  endif()
endfunction()
