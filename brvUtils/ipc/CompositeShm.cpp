#include "brvUtils/ipc/CompositeShm.h"

#include "brvUtils/core/Errors.h"
#include "brvUtils/core/internal/TypeName.h"
#include "brvUtils/ipc/internal/Lock.h"
#include "brvUtils/ipc/internal/PartTable.h"

#include <Utilities/System.h>

#include <cstdio>
#include <iostream>
#include <string>

namespace brvUtils {

namespace {

std::string compositeName(char const* name, short version)
{
    return std::string(name) + "_" + std::to_string(version) + "_" + Utilities::System::GetEffectiveUserName();
}

void reportDeadTaker(const std::string& segment, const std::string& lock, const std::string& taker)
{
    // In one piece: other processes may write at the same time.
    std::cerr << "Shared memory \"" + segment + "\": " + lock + " was held by " + taker + " when it ended, and is free again.\n" << std::flush;
}

/// The lock under which one process at a time makes or checks a segment.
class InitLock
{
public:
    InitLock(SemaphoreFactory factory, const std::string& segment)
        : lock_(factory((segment + " Init Lock").c_str(), true, true))
    {
        std::string taker;
        Lock::Outcome outcome = Lock::Outcome::takerDied;
        while ((outcome = lock_.take(-1.0, taker)) == Lock::Outcome::takerDied) {
            reportDeadTaker(segment, "the initialisation lock", taker);
        }
        taken_ = outcome == Lock::Outcome::taken;
    }

    ~InitLock()
    {
        if (taken_) {
            lock_.free();
        }
    }

    InitLock(const InitLock&) = delete;
    InitLock& operator=(const InitLock&) = delete;

private:
    Lock lock_;
    bool taken_ = false;
};

} // namespace

template <void (CompositeShm::*copy)(ShmAble&, int, void*)>
bool CompositeShm::exchange(ShmAble& part, double timeout, Attempts attempts)
{
    const int id = part.getId();
    const int index = getIndex(id);
    if (index == PartTable::none) {
        return false;
    }
    void* const place = address(index);
    if (!lock(index, id, timeout, attempts)) {
        return false;
    }
    const Unlock unlock(parts_->lock(index));
    (this->*copy)(part, index, place);
    return true;
}

CompositeShm::CompositeShm(ShmFactory shmFactory, SemaphoreFactory semaphoreFactory, char const* name, size_t size,
    short version, short shmVersion)
    : shmFactory_(shmFactory)
    , semaphoreFactory_(semaphoreFactory)
    , parts_(std::make_unique<PartTable>())
    , version_(version)
{
    const std::string composite = compositeName(name, version);
    const InitLock initLock(semaphoreFactory, composite);
    std::printf("Creating composite shared memory \"%s\" v%d\n", composite.c_str(), version);
    shm_.reset(shmFactory(composite.c_str(), size + static_cast<size_t>(version_.getSize()), shmVersion, true));
    if (shm_ == nullptr || shm_->getPtr() == nullptr) {
        throw ConfigurationError("Shared memory \"" + composite + "\" of " + std::to_string(size) + " bytes cannot be created.\n");
    }
    if (!addPart(version_)) {
        std::printf("ERROR: Unable to add shmversion for %s.\n", typeName(typeid(CompositeShm*)).c_str());
    }
    settleVersion(name, version);
    std::printf("Composite shared memory \"%s\" v%d successfully created.\n", composite.c_str(), version);
}

CompositeShm::~CompositeShm() = default;

void CompositeShm::settleVersion(char const* name, short expected)
{
    if (shm_->isCreated()) {
        if (!exchange<&CompositeShm::write>(version_, -1.0, Attempts::untilHad)) {
            std::printf("ERROR: Unable to write version of the Shm %s.\n", name);
        }
        return;
    }
    if (!exchange<&CompositeShm::read>(version_, -1.0, Attempts::untilHad)) {
        std::printf("ERROR: Unable to read version of the Shm %s.\n", name);
    }
    if (version_.getVersion() != expected) {
        char text[512];
        std::snprintf(text, sizeof text,
            "%s: Version of shm of this program = %d is different of the version of the shm = %d\nProgram will end.\n", name,
            expected, version_.getVersion());
        std::printf("%s", text);
        throw ConfigurationError(text);
    }
}

bool CompositeShm::addPart(ShmAble& part)
{
    const auto size = static_cast<size_t>(part.getSize());
    const size_t alignment = shm_->getAlignment();
    size_t padding = 0;
    if (alignment != 0 && size % alignment != 0) {
        padding = alignment - size % alignment;
        if (!shm_->addPaddingBytes(padding)) {
            std::printf("ERROR: No more place to add %zu padding bytes for %s.\n", padding, typeName(typeid(part)).c_str());
            return false;
        }
    }
    const size_t room = shm_->getSize() - parts_->end();
    if (parts_->isFull() || size > room || padding > room - size) {
        printNoRoom(part, padding);
        return false;
    }
    const int id = part.getId();
    const std::string lockName = std::string(shm_->getName()) + " Part " + std::to_string(id);
    const int index = parts_->add(id, size + padding, Lock(semaphoreFactory_(lockName.c_str(), true, true)));
    shm_->describePart(index, parts_->offset(index), size + padding, parts_->lock(index).semaphore());
    if (shm_->isCreated() && !exchange<&CompositeShm::write>(part, -1.0, Attempts::untilHad)) {
        std::printf("ERROR : can't initialize the shm %s!\n", shm_->getName());
    }
    return true;
}

void CompositeShm::printNoRoom(ShmAble& part, size_t padding) const
{
    std::printf("No more Room to add object %d in shm\n", part.getId());
    std::printf("MaxPARTS : %d  nbParts : %d\n", PartTable::capacity, parts_->count());
    std::printf("size : %zu  \n", shm_->getSize());
    std::printf("name : %s  \n", shm_->getName());
    std::printf("offset[myNbParts] %zu + shmAble.getSize() %d + nbPadding %zu\n", parts_->end(), part.getSize(), padding);
}

int CompositeShm::getIndex(int id) const
{
    const int index = parts_->find(id);
    if (index == PartTable::none) {
        std::printf("CompositeShm: Object %d not in Shm\n", id);
    }
    return index;
}

bool CompositeShm::lock(int index, int id, double timeout, Attempts attempts)
{
    return parts_->lock(index).tryTake() || lockPatiently(index, id, timeout, attempts);
}

bool CompositeShm::lockPatiently(int index, int id, double timeout, Attempts attempts)
{
    for (;;) {
        std::string taker;
        const Lock::Outcome outcome = parts_->lock(index).take(timeout, taker);
        if (outcome != Lock::Outcome::takerDied) {
            return outcome == Lock::Outcome::taken;
        }
        reportDeadTaker(shm_->getName(), "part " + std::to_string(id), taker);
        if (attempts == Attempts::one) {
            return false;
        }
    }
}

void* CompositeShm::address(int index) const
{
    return static_cast<char*>(shm_->getPtr()) + parts_->offset(index);
}

void CompositeShm::write(ShmAble& part, int index, void* address)
{
    part.put(address);
    shm_->afterWrite(index);
}

void CompositeShm::read(ShmAble& part, int index, void* address)
{
    if (shm_->beforeRead(index)) {
        part.get(address);
    }
}

bool CompositeShm::put(ShmAble& part, double timeout)
{
    return exchange<&CompositeShm::write>(part, timeout, Attempts::one);
}

bool CompositeShm::get(ShmAble& part, double timeout)
{
    return exchange<&CompositeShm::read>(part, timeout, Attempts::one);
}

bool CompositeShm::putWithoutProtect(ShmAble& part, double)
{
    const int index = getIndex(part.getId());
    if (index == PartTable::none) {
        return false;
    }
    write(part, index, address(index));
    return true;
}

bool CompositeShm::getWithoutProtect(ShmAble& part, double)
{
    const int index = getIndex(part.getId());
    if (index == PartTable::none) {
        return false;
    }
    read(part, index, address(index));
    return true;
}

bool CompositeShm::getAccess(ShmAble& part, double timeout)
{
    const int id = part.getId();
    const int index = getIndex(id);
    return index != PartTable::none && lock(index, id, timeout, Attempts::one);
}

bool CompositeShm::releaseAccess(ShmAble& part)
{
    const int index = getIndex(part.getId());
    return index != PartTable::none && parts_->lock(index).free();
}

void CompositeShm::remove(ShmAble& part)
{
    const int index = getIndex(part.getId());
    if (index == 0) {
        std::printf("Object not in Shm\n");
    } else if (index != PartTable::none) {
        parts_->remove(index);
    }
}

int CompositeShm::getNbParts() const
{
    return parts_->count();
}

void* CompositeShm::getShmPtr() const
{
    return shm_->getPtr();
}

short CompositeShm::getShmVersion() const
{
    return version_.getVersion();
}

ShmFactory CompositeShm::getShmFactory() const
{
    return shmFactory_;
}

SemaphoreFactory CompositeShm::getSemaphoreFactory() const
{
    return semaphoreFactory_;
}

bool CompositeShm::isCreated() const
{
    return shm_->isCreated();
}

char const* CompositeShm::shmName() const
{
    return shm_->getName();
}

} // namespace brvUtils
