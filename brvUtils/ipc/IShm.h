#pragma once

#include "brvUtils/export.h"

#include <cstddef>

namespace brvUtils {

class ISemaphore;

/// A block of bytes that several processes map under one name. It holds no lock of its own. What a segment is does not
/// change after its construction, so that any thread may ask.
class BRVUTILS_API IShm
{
public:
    virtual ~IShm();

    /// The first byte as mapped in this process; null when the segment could not be made.
    virtual void* getPtr() const = 0;

    /// Bytes.
    virtual size_t getSize() const = 0;

    /// Tells the segment where a part of a composite segment lies and what guards it. Ignored unless overridden.
    /// \param id index of the part. \param offset, size bytes, padding included; size 0 when the part is removed.
    /// \param semaphore not owned; null when the part is removed, and not to be used after that.
    virtual void describePart(int id, size_t offset, size_t size, ISemaphore* semaphore);

    /// Called before a part is read. \return whether it may be read; true unless overridden.
    virtual bool beforeRead(int id);

    /// Called after a part was written. Does nothing unless overridden.
    virtual void afterWrite(int id);

    /// Whether this process made the segment, and so initialises its contents.
    virtual bool isCreated() const = 0;

    /// The name by which the system knows the segment.
    virtual char const* getName() const = 0;

    /// The alignment in bytes that parts must respect; 0 for none.
    virtual size_t getAlignment() const = 0;

    /// Accounts for bytes that a composite segment leaves unused. \return whether there is room for them.
    virtual bool addPaddingBytes(size_t count) = 0;

    /// Copies getSize() bytes from `source` into the segment, without a lock. getPtr() must not be null.
    void setValue(void* source);

    /// Copies getSize() bytes of the segment to `destination`, without a lock. getPtr() must not be null.
    void getValue(void* destination);
};

/// Makes or opens a segment; the caller owns it.
using ShmFactory = IShm* (*)(char const* name, size_t size, short version, bool withInstance);

} // namespace brvUtils
