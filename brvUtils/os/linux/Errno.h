#pragma once

#include "brvUtils/os/Error.h"

#include <cerrno>

namespace brvUtils::os {

/// The layer's code for a number of `errno`: the one place where the two meet.
inline ErrorCode fromErrno(int number)
{
    switch (number) {
    case 0: return error::none;
    case ENOENT: return error::fileNotFound;
    case ENOTDIR: return error::pathNotFound;
    case EMFILE:
    case ENFILE: return error::tooManyOpenFiles;
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
    case ELOOP: return error::accessDenied;
    case EBADF: return error::invalidHandle;
    case ENOMEM:
    case EAGAIN:
    case ENOLCK: return error::notEnoughMemory;
    case ENOSYS:
    case EOPNOTSUPP: return error::notSupported;
    case ENOSPC:
    case EDQUOT:
    case EFBIG: return error::diskFull;
    case EEXIST: return error::alreadyExists;
    case ENAMETOOLONG: return error::fileNameTooLong;
    default: return error::invalidParameter;
    }
}

} // namespace brvUtils::os
