#pragma once

#include "brvUtils/ipc/CompositeShm.h"
#include "brvUtils/ipc/SemaphoreWin32.h"
#include "brvUtils/ipc/ShmWin32.h"
#include "brvUtils/os/linux/BareFutexLock.h"

#include <boost/interprocess/mapped_region.hpp>
#include <boost/interprocess/shared_memory_object.hpp>
#include <boost/interprocess/sync/named_semaphore.hpp>

#include <atomic>
#include <cstring>
#include <deque>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

/// The same exchange in four ways: a block of bytes in shared memory under a lock, written by put and read by get. All
/// processes that give the same name meet.
namespace exchange {

namespace bip = boost::interprocess;

/// A block as part of a composite segment.
class Block : public brvUtils::ShmAble
{
public:
    Block(int id, std::size_t size)
        : bytes(size, 'b')
        , id_(id)
    {
    }
    int getId() override { return id_; }
    int getSize() override { return static_cast<int>(bytes.size()); }
    void put(void* destination) override { std::memcpy(destination, bytes.data(), bytes.size()); }
    void get(void* source) override { std::memcpy(bytes.data(), source, bytes.size()); }

    std::vector<char> bytes;

private:
    int id_;
};

/// This library: the last of so many parts of one size.
class Ours : brvUtils::CompositeShm
{
public:
    Ours(const std::string& name, std::size_t size, int partCount = 1)
        : CompositeShm(brvUtils::ShmWin32::New, brvUtils::SemaphoreWin32::New, name.c_str(), size * static_cast<std::size_t>(partCount), 1, 0)
    {
        for (int id = 0; id < partCount; ++id) {
            addPart(blocks_.emplace_back(id, size));
        }
        last_ = &blocks_.back();
    }
    void put() { CompositeShm::put(*last_, -1.0); }
    void get() { CompositeShm::get(*last_, -1.0); }

private:
    std::deque<Block> blocks_;
    Block* last_;
};

/// Boost.Interprocess: a named semaphore and a shared-memory object. Its names outlive its processes: one of them removes.
class Boost
{
public:
    Boost(const std::string& name, std::size_t size, bool remove = true)
        : name_(name)
        , remove_(remove)
        , semaphore_(bip::open_or_create, name.c_str(), 1)
        , memory_(bip::open_or_create, name.c_str(), bip::read_write)
        , block_(size, 'b')
    {
        memory_.truncate(static_cast<bip::offset_t>(size));
        region_ = bip::mapped_region(memory_, bip::read_write);
    }
    ~Boost()
    {
        if (remove_) {
            bip::named_semaphore::remove(name_.c_str());
            bip::shared_memory_object::remove(name_.c_str());
        }
    }
    void put()
    {
        semaphore_.wait();
        std::memcpy(region_.get_address(), block_.data(), block_.size());
        semaphore_.post();
    }
    void get()
    {
        semaphore_.wait();
        std::memcpy(block_.data(), region_.get_address(), block_.size());
        semaphore_.post();
    }

private:
    std::string name_;
    bool remove_;
    bip::named_semaphore semaphore_;
    bip::shared_memory_object memory_;
    bip::mapped_region region_;
    std::vector<char> block_;
};

/// Compare-and-swap alone: no wait that sleeps.
class SpinLock
{
public:
    void lock()
    {
        int expected = 0;
        while (!word_.compare_exchange_weak(expected, 1, std::memory_order_acquire)) {
            expected = 0;
        }
    }
    void unlock()
    {
        int expected = 1;
        word_.compare_exchange_strong(expected, 0, std::memory_order_release);
    }

private:
    std::atomic<int> word_{0};
};

/// A lock and a block in memory that is shared under the name.
template <typename Mutex>
class Bare
{
public:
    Bare(const std::string& name, std::size_t size)
        : shm_(name.c_str(), sizeof(Shared) + size, 0, true)
        , block_(size, 'b')
    {
    }
    void put()
    {
        shared().mutex.lock();
        std::memcpy(bytes(), block_.data(), block_.size());
        shared().mutex.unlock();
    }
    void get()
    {
        shared().mutex.lock();
        std::memcpy(block_.data(), bytes(), block_.size());
        shared().mutex.unlock();
    }

private:
    struct alignas(64) Shared
    {
        Mutex mutex; // all zero is free
    };
    Shared& shared() const { return *static_cast<Shared*>(shm_.getPtr()); }
    void* bytes() const { return &shared() + 1; }

    brvUtils::ShmWin32 shm_;
    std::vector<char> block_;
};

using Futex = Bare<brvUtils::os::BareFutexLock>;
using Limit = Bare<SpinLock>;

} // namespace exchange
