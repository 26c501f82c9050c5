#pragma once

/// \file
/// Marks what this companion exports.

/// \def UTILITIES_API
/// Stands before each class and function that is exported.

#if defined(_WIN32)
#  if defined(UTILITIES_BUILDING)
#    define UTILITIES_API __declspec(dllexport)
#  else
#    define UTILITIES_API __declspec(dllimport)
#  endif
#else
#  define UTILITIES_API __attribute__((visibility("default")))
#endif
