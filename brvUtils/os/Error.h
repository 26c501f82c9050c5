#pragma once

#include <cstdint>
#include <string>

/// The one thin layer over the operating system.
///
/// Nothing in it throws or prints, and nothing in it knows a class of the library. The headers of this folder say what
/// the library needs; `windows/` and `linux/` supply it under the same file names.
namespace brvUtils::os {

/// What went wrong, in the numbers of Windows on both systems, since the library's messages print them. 0 is success.
using ErrorCode = std::uint32_t;

/// The codes that the layer itself gives. Windows may answer with others of its own.
namespace error {
constexpr ErrorCode none = 0;
constexpr ErrorCode fileNotFound = 2;
constexpr ErrorCode pathNotFound = 3;
constexpr ErrorCode tooManyOpenFiles = 4;
constexpr ErrorCode accessDenied = 5;
constexpr ErrorCode invalidHandle = 6; ///< Null or closed handle, or a name that belongs to another kind of object.
constexpr ErrorCode notEnoughMemory = 8; ///< No memory, or no place left for one more named object.
constexpr ErrorCode invalidData = 13; ///< The table of named objects is damaged.
constexpr ErrorCode notSupported = 50; ///< The system cannot do this.
constexpr ErrorCode invalidParameter = 87; ///< Bad size, name or count.
constexpr ErrorCode diskFull = 112; ///< The shared-memory file system has not enough space.
constexpr ErrorCode moduleNotFound = 126; ///< No such library, or something that it needs is missing.
constexpr ErrorCode alreadyExists = 183;
constexpr ErrorCode fileNameTooLong = 206;
constexpr ErrorCode tooManyPosts = 298; ///< A release of a semaphore that is free.
constexpr ErrorCode revisionMismatch = 1306; ///< The table of named objects was made by another version of the library.
} // namespace error

/// The system's text for the calling thread's last error, as the system gives it: on Windows with its line end, on Linux
/// the C library's text for `errno`. Empty when the system has no text.
std::string lastSystemErrorText();

} // namespace brvUtils::os
