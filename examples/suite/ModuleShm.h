#pragma once

#include "VehicleState.h"

#include <brvUtils/core/Errors.h>
#include <brvUtils/ipc/CompositeShm.h>
#include <brvUtils/ipc/SemaphoreWin32.h>
#include <brvUtils/ipc/ShmAble.h>
#include <brvUtils/ipc/ShmFactory.h>

#include <cstddef>
#include <cstring>
#include <optional>
#include <string>
#include <type_traits>

namespace suite {

/// A part of a segment that is copied as it is. Raise the segment's version when a value changes its layout.
template <typename Value, int Id>
class ValuePart : public brvUtils::ShmAble
{
    static_assert(std::is_trivially_copyable_v<Value>);

public:
    int getId() override { return Id; }
    int getSize() override { return sizeof(Value); }
    void put(void* destination) override { std::memcpy(destination, &value, sizeof value); }
    void get(void* source) override { std::memcpy(&value, source, sizeof value); }

    Value value{};
};

/// Held by one of those that make or open the segment of a name, from its construction on until it is released.
class Making
{
public:
    explicit Making(const std::string& name)
        : lock_(std::in_place, (name + "Making").c_str(), true, true)
    {
        constexpr double patience = 5.0; // seconds; it is held for milliseconds: nobody is waited for who was stopped meanwhile
        std::string dead;
        while (lock_->askAsLock(patience, dead) == brvUtils::SemaphoreWin32::LockOutcome::takerDied) {
        }
    }
    ~Making() { release(); }
    Making(const Making&) = delete;
    Making& operator=(const Making&) = delete;

    void release()
    {
        if (lock_) {
            lock_->free();
            lock_.reset();
        }
    }

private:
    std::optional<brvUtils::SemaphoreWin32> lock_; ///< Closed when released, so that nothing is left of one who is killed.
};

/// A segment where the selected configuration says, which goes on when modules are killed. One thread at a time per object.
class ModuleShm : private Making, public brvUtils::CompositeShm
{
protected:
    /// addParts() has to follow. \throw brvUtils::ConfigurationError when the shared memory cannot be had.
    ModuleShm(const std::string& name, std::size_t size, short layoutVersion)
        : Making(name)
        , CompositeShm(brvUtils::newShm, brvUtils::SemaphoreWin32::New, name.c_str(), size, layoutVersion, 0)
    {
    }

    /// Registers all parts. Whoever made the segment writes their values to it: only then do others get to open it, or
    /// these values would replace what they wrote. False when one of the parts could not be made.
    template <typename... Parts>
    bool addParts(Parts&... parts)
    {
        const bool done = (addPart(parts) && ...);
        release();
        return done;
    }

    /// Writes the part's value to the segment, or reads it from there. False when the part could not be had.
    bool write(brvUtils::ShmAble& part) { return insist(part, &ModuleShm::put); }
    bool read(brvUtils::ShmAble& part) { return insist(part, &ModuleShm::get); }

private:
    using Exchange = bool (ModuleShm::*)(brvUtils::ShmAble&, double);

    /// Tries twice. A part is held for less than a microsecond: who still does after all this time was killed or stopped
    /// meanwhile, and it is taken from him. Where the library noticed that itself, the first attempt failed at once.
    bool insist(brvUtils::ShmAble& part, Exchange attempt)
    {
        constexpr double patience = 0.3; // seconds
        constexpr double nanoseconds = 1e9; // in a second
        const std::int64_t start = clockNow();
        if ((this->*attempt)(part, patience)) {
            return true;
        }
        if (static_cast<double>(clockNow() - start) >= patience * nanoseconds) {
            releaseAccess(part);
        }
        return (this->*attempt)(part, patience);
    }
};

} // namespace suite
