#pragma once

#include "brvUtils/ipc/CompositeShm.h"
#include "brvUtils/ipc/SemaphoreWin32.h"
#include "brvUtils/ipc/ShmWin32.h"

#include <Utilities/System.h>

#include <cstring>
#include <string>

namespace brvUtils {

/// A number that fills its part.
class Number : public ShmAble
{
public:
    explicit Number(int id, int initial = 0, int size = 8)
        : value(initial)
        , id_(id)
        , size_(size)
    {
    }

    int getId() override { return id_; }
    int getSize() override { return size_; }
    void put(void* destination) override
    {
        std::memset(destination, 0, static_cast<size_t>(size_));
        std::memcpy(destination, &value, sizeof value);
    }
    void get(void* source) override { std::memcpy(&value, source, sizeof value); }

    int value;

private:
    int id_;
    int size_;
};

/// Gives what CompositeShm offers to classes derived from it.
class Composite : public CompositeShm
{
public:
    explicit Composite(const std::string& name, size_t size = 100, short version = 1, ShmFactory shm = ShmWin32::New,
        short shmVersion = 0)
        : CompositeShm(shm, SemaphoreWin32::New, name.c_str(), size, version, shmVersion)
    {
    }

    using CompositeShm::addPart;
    using CompositeShm::get;
    using CompositeShm::getAccess;
    using CompositeShm::getNbParts;
    using CompositeShm::getShmPtr;
    using CompositeShm::getShmVersion;
    using CompositeShm::getWithoutProtect;
    using CompositeShm::isCreated;
    using CompositeShm::put;
    using CompositeShm::putWithoutProtect;
    using CompositeShm::releaseAccess;
    using CompositeShm::remove;
    using CompositeShm::shmName;
};

inline std::string compositeName(const std::string& name, int version = 1)
{
    return name + "_" + std::to_string(version) + "_" + Utilities::System::GetEffectiveUserName();
}

} // namespace brvUtils
