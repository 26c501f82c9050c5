#include "brvUtils/ipc/ShmVmic.h"

#include "brvUtils/ipc/ISemaphore.h"
#include "brvUtils/ipc/internal/CardMessages.h"
#include "brvUtils/ipc/internal/Checksum.h"
#include "brvUtils/ipc/internal/ReflectiveDriver.h"

namespace brvUtils {

namespace {

constexpr double refreshPatience = 0.1; // seconds

} // namespace

bool ShmVmic::hasPart(int index, char const* attempt)
{
    if (index >= 0 && index < partCount) {
        return true;
    }
    return complainOfCard(std::string("Trying to ") + attempt + " " + std::to_string(index) + ", which is greater or equal to " + std::to_string(partCount));
}

void ShmVmic::describePart(int index, size_t offset, size_t size, ISemaphore* semaphore)
{
    if (!hasPart(index, "describe part")) {
        return;
    }
    if (size > size_ || offset > size_ - size) {
        complainOfCard("Part " + std::to_string(index) + " does not lie within " + name_);
        return;
    }
    const std::lock_guard lock(refreshing_);
    Part& part = parts_[static_cast<size_t>(index)];
    part.offset = offset;
    part.size = size;
    part.semaphore = semaphore;
}

void ShmVmic::afterWrite(int index)
{
    if (!hasPart(index, "write block")) {
        return;
    }
    const Part& part = parts_[static_cast<size_t>(index)];
    char* const data = copy_.get() + part.offset;
    driver_->write(card_, baseAddress_ + static_cast<rfm2g::Offset>(part.offset), data, static_cast<rfm2g::Offset>(part.size));
    int checksum = crc(data, part.size);
    driver_->write(card_, checksumOffset(index), &checksum, sizeof checksum);
    if (interrupt_ != 0) {
        driver_->sendEvent(card_, rfm2g::allNodes, static_cast<rfm2g::Event>(interrupt_), static_cast<std::uint32_t>(index));
    }
}

bool ShmVmic::beforeRead(int index)
{
    if (!hasPart(index, "read block")) {
        return false;
    }
    if (interrupt_ == 0) {
        refresh(index);
    }
    return parts_[static_cast<size_t>(index)].valid;
}

void ShmVmic::callback(int index)
{
    if (index < 0 || index >= partCount) {
        return;
    }
    const std::lock_guard lock(refreshing_);
    ISemaphore* const semaphore = parts_[static_cast<size_t>(index)].semaphore;
    if (semaphore != nullptr && semaphore->ask(refreshPatience)) {
        refresh(index);
        semaphore->free();
    }
}

void ShmVmic::refresh(int index)
{
    Part& part = parts_[static_cast<size_t>(index)];
    char* const data = copy_.get() + part.offset;
    int checksum = 0;
    const bool read = driver_->read(card_, baseAddress_ + static_cast<rfm2g::Offset>(part.offset), data, static_cast<rfm2g::Offset>(part.size)) == rfm2g::Status::success
        && driver_->read(card_, checksumOffset(index), &checksum, sizeof checksum) == rfm2g::Status::success;
    part.valid = read && checksum == crc(data, part.size);
    ++part.reads;
    part.failures += part.valid ? 0 : 1;
}

rfm2g::Offset ShmVmic::checksumOffset(int index) const
{
    return static_cast<rfm2g::Offset>(baseAddress_ + size_ + sizeof(int) * static_cast<size_t>(index));
}

int ShmVmic::crc(char const* data, size_t length)
{
    return additiveChecksum(data, length);
}

} // namespace brvUtils
