#pragma once

/// \file
/// Marks what this companion exports.

/// \def STUDIOVERSION_API
/// Stands before each class and function that is exported.

#if defined(_WIN32)
#  if defined(STUDIOVERSION_BUILDING)
#    define STUDIOVERSION_API __declspec(dllexport)
#  else
#    define STUDIOVERSION_API __declspec(dllimport)
#  endif
#else
#  define STUDIOVERSION_API __attribute__((visibility("default")))
#endif
