#pragma once

#include "brvUtils/export.h"

namespace brvUtils {

/// A part of a composite segment: an object that can copy itself into and out of a block of bytes, in a format of its
/// own that all programs sharing the segment agree on.
class BRVUTILS_API ShmAble
{
public:
    virtual ~ShmAble();

    /// The identifier, unique within one segment. -2 belongs to the version record.
    virtual int getId() = 0;

    /// The number of bytes that put writes and get reads. Does not change while the part is registered.
    virtual int getSize() = 0;

    /// Writes the value to the segment. Called with the part's lock held.
    virtual void put(void* destination) = 0;

    /// Takes the value from the segment. Called with the part's lock held.
    virtual void get(void* source) = 0;
};

} // namespace brvUtils
