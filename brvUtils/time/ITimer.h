#pragma once

#include "brvUtils/export.h"

namespace brvUtils {

/// A source of beats.
class BRVUTILS_API ITimer
{
public:
    virtual ~ITimer();

    /// Starts the beats, or starts them again.
    /// \return false when there is nothing to be called.
    virtual bool run() = 0;

    /// Ends the beats.
    /// \return false when there was nothing to end, or it did not end in time.
    virtual bool pause() = 0;
};

} // namespace brvUtils
