# brv_add_benchmark(NAME SOURCE... [LIBRARIES target...]): a program that scripts/bench builds and runs.

function(brv_add_benchmark name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "LIBRARIES")
  if(NOT BRVUTILS_BUILD_BENCHMARKS)
    return()
  endif()
  find_package(benchmark REQUIRED)
  add_executable(${name} ${arg_UNPARSED_ARGUMENTS})
  target_link_libraries(${name} PRIVATE brv_benchmarking brv_testing benchmark::benchmark ${arg_LIBRARIES})
endfunction()
