# brv_add_version_info(TARGET [DESCRIPTION text] [PRODUCT text] [COMPANY text] [COPYRIGHT text] [COMMENTS text]
#                      [VERSION a.b.c.d])
#
# Gives a program or shared library a version resource, which brvUtils::RFileVersionInfo reads and the Explorer of Windows
# shows. On Windows it is a resource as usual; on Linux the same bytes are in the section .rsrc.version of the file, which
# stays when the file is stripped and when the linker drops unused sections. Texts may be of any characters, and
# hold generator expressions.
#
#   FileDescription   DESCRIPTION, else PROJECT_DESCRIPTION, else the target's name
#   FileVersion       VERSION, else PROJECT_VERSION with BRVUTILS_BUILD_NUMBER as its fourth number; always four numbers, each
#   ProductVersion    the same                                       below 65536; missing ones are 0
#   InternalName      the target's name
#   OriginalFilename  the file's name, without the version that it may have on Linux
#   ProductName       PRODUCT, else PROJECT_NAME
#   CompanyName, LegalCopyright, Comments       COMPANY, COPYRIGHT, COMMENTS; missing unless given
#
# The texts are told to be English (0x0409), in Unicode (0x04b0). The project has C++ among its languages.

if(WIN32)
  enable_language(RC)
endif()

# A text as it is written between quotes in C++, which resource scripts share but for the quotes in it.
function(_brv_version_text text quote result)
  string(REPLACE "\\" "\\\\" text "${text}")
  string(REPLACE "\"" "${quote}" text "${text}")
  string(REPLACE "\n" "\\n" text "${text}")
  set(${result} "${text}" PARENT_SCOPE)
endfunction()

# Four numbers of a version, in a list.
function(_brv_version_numbers version result)
  string(REPLACE "." ";" numbers "${version}")
  list(APPEND numbers 0 0 0 0)
  list(SUBLIST numbers 0 4 numbers)
  list(TRANSFORM numbers REPLACE "^0+([0-9])" "\\1") # as in dates, and octal to compilers
  foreach(number IN LISTS numbers)
    if(NOT version MATCHES "^[0-9]+(\\.[0-9]+)?(\\.[0-9]+)?(\\.[0-9]+)?$" OR number GREATER 65535)
      message(FATAL_ERROR "brv_add_version_info: not a version of up to four numbers below 65536: ${version}")
    endif()
  endforeach()
  set(${result} "${numbers}" PARENT_SCOPE)
endfunction()

function(brv_add_version_info target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "DESCRIPTION;PRODUCT;COMPANY;COPYRIGHT;COMMENTS;VERSION" "")
  get_target_property(type ${target} TYPE)
  if(arg_UNPARSED_ARGUMENTS OR NOT type MATCHES "^(EXECUTABLE|SHARED_LIBRARY|MODULE_LIBRARY)$")
    message(FATAL_ERROR "brv_add_version_info: ${target} is neither a program nor a shared library, or too much is said: ${arg_UNPARSED_ARGUMENTS}")
  endif()

  set(version "${arg_VERSION}")
  if(version STREQUAL "" AND PROJECT_VERSION)
    _brv_version_numbers("${PROJECT_VERSION}" numbers)
    if(NOT PROJECT_VERSION MATCHES "\\..*\\..*\\." AND DEFINED BRVUTILS_BUILD_NUMBER)
      list(POP_BACK numbers)
      list(APPEND numbers "${BRVUTILS_BUILD_NUMBER}")
    endif()
    list(JOIN numbers "." version)
  elseif(version STREQUAL "")
    set(version 0)
  endif()
  _brv_version_numbers("${version}" numbers)
  list(JOIN numbers "," BRV_VERSION_NUMBERS)
  list(JOIN numbers "." version)

  set(description "${PROJECT_DESCRIPTION}")
  if(description STREQUAL "")
    set(description "${target}")
  endif()
  if(NOT "${arg_DESCRIPTION}" STREQUAL "")
    set(description "${arg_DESCRIPTION}")
  endif()
  set(product "${PROJECT_NAME}")
  if(NOT "${arg_PRODUCT}" STREQUAL "") # one called OFF is one
    set(product "${arg_PRODUCT}")
  endif()
  set(file_name "$<TARGET_FILE_PREFIX:${target}>$<TARGET_FILE_BASE_NAME:${target}>$<TARGET_FILE_SUFFIX:${target}>")
  set(entries Comments arg_COMMENTS CompanyName arg_COMPANY FileDescription description FileVersion version InternalName target
    LegalCopyright arg_COPYRIGHT OriginalFilename file_name ProductName product ProductVersion version)

  if(WIN32)
    set(kind rc)
    set(quote "\"\"")
  else()
    set(kind cpp)
    set(quote "\\\"")
  endif()
  set(BRV_VERSION_ENTRIES "")
  while(entries)
    list(POP_FRONT entries name variable)
    _brv_version_text("${${variable}}" "${quote}" text)
    if(text STREQUAL "")
      continue()
    endif()
    if(WIN32)
      string(APPEND BRV_VERSION_ENTRIES "      VALUE \"${name}\", \"${text}\"\n")
    else()
      string(APPEND BRV_VERSION_ENTRIES "    BRV_ENTRY(${name}, u\"${text}\");\n")
    endif()
  endwhile()
  set(BRV_VERSION_TYPE 2) # a library
  if(type STREQUAL EXECUTABLE)
    set(BRV_VERSION_TYPE 1)
  endif()

  # Two steps: what is only known when all is configured is filled in then.
  set(source "${CMAKE_CURRENT_BINARY_DIR}/${target}-version")
  configure_file("${CMAKE_CURRENT_FUNCTION_LIST_DIR}/BrvVersionInfo.${kind}.in" "${source}.${kind}.in" @ONLY)
  file(GENERATE OUTPUT "${source}-$<CONFIG>.${kind}" INPUT "${source}.${kind}.in")
  # By itself: what the target is compiled with is not for resources, nor are sanitizers.
  add_library(${target}_version OBJECT "${source}-$<CONFIG>.${kind}")
  set_target_properties(${target}_version PROPERTIES COMPILE_OPTIONS "" COMPILE_DEFINITIONS "" INCLUDE_DIRECTORIES ""
    INTERPROCEDURAL_OPTIMIZATION OFF)
  target_sources(${target} PRIVATE $<TARGET_OBJECTS:${target}_version>)
endfunction()
