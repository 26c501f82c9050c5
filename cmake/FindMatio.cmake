# Matio::Matio, the library that reads and writes MAT files.
find_path(MATIO_INCLUDE_DIR matio.h)
find_library(MATIO_LIBRARY NAMES matio libmatio)
mark_as_advanced(MATIO_INCLUDE_DIR MATIO_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Matio REQUIRED_VARS MATIO_LIBRARY MATIO_INCLUDE_DIR)

if(Matio_FOUND AND NOT TARGET Matio::Matio)
  add_library(Matio::Matio UNKNOWN IMPORTED)
  set_target_properties(Matio::Matio PROPERTIES
    IMPORTED_LOCATION "${MATIO_LIBRARY}" INTERFACE_INCLUDE_DIRECTORIES "${MATIO_INCLUDE_DIR}")
endif()
