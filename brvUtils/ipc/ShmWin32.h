#pragma once

#include "brvUtils/ipc/IShm.h"

#include <string>

namespace brvUtils {

namespace os {
struct Segment;
}

/// The ordinary segment: memory of this computer, shared by name.
///
/// It is all zero when made, lives while any process has it open, and throws nothing: one that could not be made has a
/// null getPtr().
class BRVUTILS_API ShmWin32 : public IShm
{
public:
    /// Opens the segment of that name, or makes it, and says on the standard output which of them happened, or the
    /// system's code of the failure.
    /// \param name never null. \param version above 0 is appended to it as "_<version>", so that programs built for different
    ///        layouts do not meet.
    /// \param size bytes, 1 to 4 GiB - 1; an existing segment must have at least as many, counted in whole pages.
    /// \param withInstance whether the name is qualified by the instance of the suite (buildKeyWithInstance).
    ShmWin32(char const* name, size_t size, short version, bool withInstance);
    ~ShmWin32() override;
    ShmWin32(const ShmWin32&) = delete;
    ShmWin32& operator=(const ShmWin32&) = delete;

    void* getPtr() const override;

    /// The size asked for.
    size_t getSize() const override;
    bool isCreated() const override;
    char const* getName() const override;

    /// 0: any place will do.
    size_t getAlignment() const override;

    /// True; there is nothing to account for.
    bool addPaddingBytes(size_t count) override;

    /// Makes one as the constructor does; the caller owns it. Null when there is no memory behind it.
    static IShm* New(char const* name, size_t size, short version, bool withInstance);

private:
    size_t size_;
    std::string name_; ///< As the system knows it.
    bool created_;
    os::Segment* segment_;
    void* view_;
};

} // namespace brvUtils
