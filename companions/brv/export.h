#pragma once

/// \file
/// Marks what this companion exports.

/// \def BRV_API
/// Stands before each class and function that is exported.

#if defined(_WIN32)
#  if defined(BRV_BUILDING)
#    define BRV_API __declspec(dllexport)
#  else
#    define BRV_API __declspec(dllimport)
#  endif
#else
#  define BRV_API __attribute__((visibility("default")))
#endif
