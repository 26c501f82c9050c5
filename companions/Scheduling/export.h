#pragma once

/// \file
/// Marks what this companion exports.

/// \def SCHEDULING_API
/// Stands before each class and function that is exported.

#if defined(_WIN32)
#  if defined(SCHEDULING_BUILDING)
#    define SCHEDULING_API __declspec(dllexport)
#  else
#    define SCHEDULING_API __declspec(dllimport)
#  endif
#else
#  define SCHEDULING_API __attribute__((visibility("default")))
#endif
