#pragma once

/// \file
/// Marks what the library exports. Everything else stays hidden inside it.

/// \def BRVUTILS_API
/// Stands before each class and function that is exported.

#if defined(_WIN32)
#  if defined(BRVUTILS_BUILDING)
#    define BRVUTILS_API __declspec(dllexport)
#  else
#    define BRVUTILS_API __declspec(dllimport)
#  endif
#else
#  define BRVUTILS_API __attribute__((visibility("default")))
#endif
