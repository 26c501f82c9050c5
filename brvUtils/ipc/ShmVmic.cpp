#include "brvUtils/ipc/ShmVmic.h"

#include "brvUtils/core/Errors.h"
#include "brvUtils/ipc/internal/CardMessages.h"
#include "brvUtils/ipc/internal/ReflectiveDriver.h"
#include "brvUtils/os/ReflectiveMemory.h"

#include <Utilities/ConfigFile.h>

#include <new>
#include <sstream>

namespace brvUtils {

namespace {

constexpr std::int32_t lastInterrupt = 4;
constexpr std::uint64_t megabyte = 1048576;
constexpr std::uint64_t checksumArea = 256 * sizeof(std::uint32_t); // bytes on the card behind the segment

/// Held from the look whether an interrupt is free until the segment has it.
std::mutex constructing;

} // namespace

ShmVmic::ShmVmic(char const* name, size_t size, short version, Utilities::ConfigFile& config)
    : name_(version > 0 ? name + ("_" + std::to_string(version)) : name)
    , size_(size)
{
    configure(config);
    const std::lock_guard lock(constructing);
    std::string device = "1";
    config.readString("DeviceId", device);
    if (hasGoodInterrupt() && (driver_ = loadReflectiveDriver()) != nullptr && open(os::reflectiveMemoryDevicePrefix + device) && survey() && listen()) {
        copy_.reset(new (std::nothrow) char[size_]());
        if (copy_ != nullptr && interrupt_ != 0) {
            enroll();
        }
    }
}

ShmVmic::~ShmVmic()
{
    resign();
    copy_.reset();
    if (card_ != nullptr) {
        driver_->close(&card_);
    }
    for (int i = 0; i < partCount; ++i) {
        const Part& part = parts_[static_cast<size_t>(i)];
        if (part.reads > 0) {
            std::ostringstream text;
            text << "Block " << i << " read " << part.reads << " times, " << part.failures * 100.0 / part.reads << "% failed";
            sayOfCard(text.str());
        }
    }
}

IShm* ShmVmic::New(char const* name, size_t size, short version, Utilities::ConfigFile& config)
{
    auto shm = std::make_unique<ShmVmic>(name, size, version, config);
    return shm->getPtr() != nullptr ? shm.release() : nullptr;
}

void ShmVmic::configure(Utilities::ConfigFile& config)
{
    if (!config.readHexaUnsignedInt("BaseAddress", baseAddress_)) {
        throw ConfigurationError("\"BaseAddress\" of the segment " + name_ + " is missing or no hexadecimal number: " + config.getFileName());
    }
    std::string interrupt;
    if (config.readString("Interrupt", interrupt) && !config.readInt("Interrupt", interrupt_)) {
        interrupt_ = -1; // no number at all: as bad as one that is too high
    }
}

bool ShmVmic::hasGoodInterrupt() const
{
    if (interrupt_ < 0 || interrupt_ > lastInterrupt) {
        return complainOfCard("Bad interrupt number specified");
    }
    const std::string other = holderOf(interrupt_);
    return other.empty() || complainOfCard("Interrupt number " + std::to_string(interrupt_) + " already used by " + other);
}

bool ShmVmic::succeeded(rfm2g::Status status) const
{
    if (status == rfm2g::Status::success) {
        return true;
    }
    const char* const text = driver_->errorMsg(status);
    return complainOfCard(text != nullptr ? text : "Unknown status " + std::to_string(static_cast<int>(status)));
}

bool ShmVmic::open(const std::string& device)
{
    std::string path = device; // which the driver might write to
    if (!succeeded(driver_->open(path.data(), &card_))) {
        return false;
    }
    sayOfCard("Device " + device + " opened");
    return true;
}

bool ShmVmic::survey()
{
    rfm2g::Node node = 0;
    rfm2g::Offset first = 0;
    rfm2g::Offset cardSize = 0;
    if (!succeeded(driver_->checkRingCont(card_))) {
        return false;
    }
    sayOfCard("Ring continuity checked");
    if (!succeeded(driver_->nodeId(card_, &node))) {
        return false;
    }
    sayOfCard("Node id: " + std::to_string(node));
    if (!succeeded(driver_->first(card_, &first)) || !succeeded(driver_->size(card_, &cardSize))) {
        return false;
    }
    sayOfCard("First byte: " + std::to_string(first) + ", size: " + std::to_string(cardSize / megabyte) + " Mb");
    sayOfCard("SHM " + name_ + " size: " + std::to_string(size_) + " bytes");
    // In 64 bits, and without a sum that a huge size could make small again.
    const std::uint64_t end = std::uint64_t{first} + cardSize;
    const bool within = baseAddress_ >= first && baseAddress_ + std::uint64_t{checksumArea} <= end && size_ <= end - baseAddress_ - checksumArea;
    return within || complainOfCard("Address range is out of VMIC area");
}

bool ShmVmic::listen()
{
    if (interrupt_ == 0) {
        sayOfCard("Not using interrupt");
        return true;
    }
    sayOfCard("Listening interrupt " + std::to_string(interrupt_));
    const auto event = static_cast<rfm2g::Event>(interrupt_);
    // Another module of this computer may have enabled it: some drivers say so.
    const rfm2g::Status enabling = driver_->enableEvent(card_, event);
    return (enabling == rfm2g::Status::alreadyEnabled || succeeded(enabling)) && succeeded(driver_->clearEvent(card_, event))
        && succeeded(driver_->enableEventCallback(card_, event, onEvent));
}

void* ShmVmic::getPtr() const
{
    return copy_.get();
}

size_t ShmVmic::getSize() const
{
    return size_;
}

bool ShmVmic::isCreated() const
{
    return false;
}

char const* ShmVmic::getName() const
{
    return name_.c_str();
}

size_t ShmVmic::getAlignment() const
{
    return 0;
}

bool ShmVmic::addPaddingBytes(size_t)
{
    return true;
}

} // namespace brvUtils
