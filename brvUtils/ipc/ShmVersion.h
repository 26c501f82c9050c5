#pragma once

#include "brvUtils/ipc/ShmAble.h"

namespace brvUtils {

/// The first part of each composite segment: the version of its layout, two bytes in native order.
class BRVUTILS_API ShmVersion : public ShmAble
{
public:
    /// \param version of the layout that this program is built for.
    explicit ShmVersion(short version);

    /// -2.
    int getId() override;
    int getSize() override;
    void put(void* destination) override;
    void get(void* source) override;

    /// As given to the constructor, or as read by get().
    short getVersion() const;

private:
    short version_;
};

} // namespace brvUtils
