#include "brvUtils/ipc/CompositeShm.h"

#include "brvUtils/core/Errors.h"
#include "brvUtils/core/internal/TypeName.h"
#include "brvUtils/ipc/ShmWin32.h"
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

// A lock cannot be taken before all stores made until then have reached the cache, those to the stack included: this is
// kept in one frame, and short.
template <void (CompositeShm::*copy)(ShmAble&, const PartPlace&), CompositeShm::Attempts attempts>
bool CompositeShm::exchange(ShmAble& part, double timeout)
{
    const int id = part.getId();
    PartPlace* const place = parts_->find(id);
    if (place == nullptr) {
        return printUnknown(id);
    }
    if (!place->lock.tryTake() && !lock(*place, timeout, attempts)) {
        return false;
    }
    const Unlock unlock(place->lock);
    (this->*copy)(part, *place);
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
    begin_ = static_cast<char*>(shm_->getPtr());
    segmentTakesPart_ = typeid(*shm_) != typeid(ShmWin32);
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
        if (!exchange<&CompositeShm::write, Attempts::untilHad>(version_, -1.0)) {
            std::printf("ERROR: Unable to write version of the Shm %s.\n", name);
        }
        return;
    }
    if (!exchange<&CompositeShm::read, Attempts::untilHad>(version_, -1.0)) {
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
    const PartPlace& place = parts_->add(id, size + padding, Lock(semaphoreFactory_(lockName.c_str(), true, true)));
    shm_->describePart(place.index, place.offset, size + padding, place.lock.semaphore());
    if (shm_->isCreated() && !exchange<&CompositeShm::write, Attempts::untilHad>(part, -1.0)) {
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

bool CompositeShm::printUnknown(int id)
{
    std::printf("CompositeShm: Object %d not in Shm\n", id);
    return false;
}

PartPlace* CompositeShm::find(ShmAble& part) const
{
    const int id = part.getId();
    PartPlace* const place = parts_->find(id);
    if (place == nullptr) {
        printUnknown(id);
    }
    return place;
}

bool CompositeShm::lock(PartPlace& place, double timeout, Attempts attempts)
{
    for (;;) {
        std::string taker;
        const Lock::Outcome outcome = place.lock.take(timeout, taker);
        if (outcome != Lock::Outcome::takerDied) {
            return outcome == Lock::Outcome::taken;
        }
        reportDeadTaker(shm_->getName(), "part " + std::to_string(place.id), taker);
        if (attempts == Attempts::one) {
            return false;
        }
    }
}

void CompositeShm::write(ShmAble& part, const PartPlace& place)
{
    part.put(begin_ + place.offset);
    if (segmentTakesPart_) {
        shm_->afterWrite(place.index);
    }
}

void CompositeShm::read(ShmAble& part, const PartPlace& place)
{
    if (!segmentTakesPart_ || shm_->beforeRead(place.index)) {
        part.get(begin_ + place.offset);
    }
}

bool CompositeShm::put(ShmAble& part, double timeout)
{
    return exchange<&CompositeShm::write, Attempts::one>(part, timeout);
}

bool CompositeShm::get(ShmAble& part, double timeout)
{
    return exchange<&CompositeShm::read, Attempts::one>(part, timeout);
}

bool CompositeShm::putWithoutProtect(ShmAble& part, double)
{
    const PartPlace* const place = find(part);
    if (place != nullptr) {
        write(part, *place);
    }
    return place != nullptr;
}

bool CompositeShm::getWithoutProtect(ShmAble& part, double)
{
    const PartPlace* const place = find(part);
    if (place != nullptr) {
        read(part, *place);
    }
    return place != nullptr;
}

bool CompositeShm::getAccess(ShmAble& part, double timeout)
{
    PartPlace* const place = find(part);
    return place != nullptr && lock(*place, timeout, Attempts::one);
}

bool CompositeShm::releaseAccess(ShmAble& part)
{
    PartPlace* const place = find(part);
    return place != nullptr && place->lock.free();
}

void CompositeShm::remove(ShmAble& part)
{
    const PartPlace* const place = find(part);
    if (place != nullptr && place->index == 0) {
        std::printf("Object not in Shm\n");
    } else if (place != nullptr) {
        shm_->describePart(place->index, place->offset, 0, nullptr); // its semaphore goes
        parts_->remove(*place);
    }
}

int CompositeShm::getNbParts() const
{
    return parts_->count();
}

void* CompositeShm::getShmPtr() const
{
    return begin_;
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
