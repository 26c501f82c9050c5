# The reference of the installed headers, with the pages, by Doxygen: the target `docs` makes it in docs/ of the build folder,
# and so does a test, which fails with the text of each warning.

find_program(DOXYGEN_EXECUTABLE doxygen)
mark_as_advanced(DOXYGEN_EXECUTABLE)
configure_file("${PROJECT_SOURCE_DIR}/docs/Doxyfile.in" "${PROJECT_BINARY_DIR}/Doxyfile" @ONLY)
set(doxygen "${DOXYGEN_EXECUTABLE}" "${PROJECT_BINARY_DIR}/Doxyfile")

if(DOXYGEN_EXECUTABLE AND PROJECT_IS_TOP_LEVEL)
  add_custom_target(docs COMMAND ${doxygen} WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}" VERBATIM)
endif()
# The sources are the same in every build: looked at once.
if(BRVUTILS_BUILD_TESTS AND CMAKE_HOST_UNIX AND NOT CMAKE_CROSSCOMPILING AND NOT BRVUTILS_SANITIZE)
  add_test(NAME docs.everything_is_documented COMMAND ${doxygen} WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}")
  set_tests_properties(docs.everything_is_documented PROPERTIES TIMEOUT 120)
  if(NOT DOXYGEN_EXECUTABLE)
    set_tests_properties(docs.everything_is_documented PROPERTIES DISABLED ON)
  endif()
endif()
