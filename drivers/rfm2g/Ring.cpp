#include "rfm2g/Ring.h"

#include "rfm2g/RingFile.h"
#include "rfm2g/RingLayout.h"
#include "rfm2g/System.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <mutex>
#include <random>

namespace softwareCard {

namespace {

constexpr std::uint64_t magic = 0x0167'6E69'5267'326D; // "m2gRing" and 1, in the order of memory
constexpr std::uint32_t version = 1;

bool isMemorySize(Offset size)
{
    constexpr Offset mebibyte = 1u << 20;
    return size == 64 * mebibyte || size == 128 * mebibyte || size == 256 * mebibyte;
}

std::string makeFolder(const std::string& folder)
{
    if (folder.empty()) {
        return makeDefaultFolder();
    }
    std::error_code error;
    std::filesystem::create_directories(std::filesystem::u8path(folder), error);
    return error ? folder + ": " + error.message() : "";
}

bool isThere(const RingPlace& place)
{
    std::error_code error;
    return std::filesystem::exists(std::filesystem::u8path(ringPath(place)), error);
}

std::string noRing(const RingPlace& place)
{
    return "there is no ring \"" + place.ring + "\"";
}

enum class Content { ring, unfinished, other };

/// What a file holds, by its first bytes. \param start is set for a ring.
Content contentOf(RingFile& file, RingStart& start)
{
    if (file.size() == 0) {
        return Content::unfinished;
    }
    if (file.size() < memoryStart || !file.readStart(&start, sizeof start)) {
        return Content::other;
    }
    const std::uint64_t found = start.magic.load();
    return found == magic ? Content::ring : found == 0 ? Content::unfinished : Content::other;
}

/// \return why that was not possible; no file is left then.
std::string make(RingFile& file, Offset size)
{
    if (!file.clear(memoryStart + size) || !file.reserve(0, memoryStart) || !file.map(memoryStart + size)) {
        const std::string problem = file.problem();
        file.remove();
        return problem;
    }
    RingStart& start = static_cast<RingLayout*>(file.memory())->start;
    start.version = version;
    start.size = size;
    std::random_device random;
    start.number = std::uint64_t{random()} << 32 | random();
    start.magic.store(magic);
    return "";
}

/// Maps a file whose content is known, making the ring where it is not finished.
std::string mapRing(RingFile& file, const RingPlace& place, std::optional<Offset> size)
{
    RingStart start{};
    switch (contentOf(file, start)) {
    case Content::other:
        return ringPath(place) + " is no ring";
    case Content::unfinished:
        return size ? make(file, *size) : noRing(place);
    case Content::ring:
        break;
    }
    if (start.version != version) {
        return "the ring \"" + place.ring + "\" is that of another version of the software card";
    }
    if (!isMemorySize(start.size) || file.size() != memoryStart + start.size) {
        return ringPath(place) + " is damaged";
    }
    return file.map(memoryStart + start.size) ? "" : file.problem();
}

} // namespace

Ring::Ring(std::unique_ptr<RingFile> file) : file_(std::move(file)), layout_(*static_cast<RingLayout*>(file_->memory())) {}

Ring::~Ring() = default;

RingOpening Ring::openLocked(const RingPlace& place, std::optional<Offset> size)
{
    if (!isRingName(place.ring)) {
        return {nullptr, "\"" + place.ring + "\" is no name of a ring: 1 to 64 letters, digits, dots, underscores and hyphens"};
    }
    if (size && !isMemorySize(*size)) {
        return {nullptr, "a ring has 64, 128 or 256 MB"};
    }
    for (;;) {
        if (!size && !isThere(place)) {
            return {nullptr, noRing(place), true};
        }
        // Where there is a ring that one looks at, too: the folder may be somebody else's.
        if (std::string problem = makeFolder(place.folder); !problem.empty()) {
            return {nullptr, problem};
        }
        auto file = std::make_unique<RingFile>(ringPath(place), size ? RingFile::Missing::make : RingFile::Missing::fail);
        if (!file->problem().empty() || !file->lock()) {
            if (!size && !isThere(place)) {
                continue; // somebody has just removed it
            }
            return {nullptr, file->problem()};
        }
        if (file->wasRemoved()) {
            file->unlock();
            continue;
        }
        if (std::string problem = mapRing(*file, place, size); !problem.empty()) {
            file->unlock();
            return {nullptr, problem, problem == noRing(place)};
        }
        return {std::unique_ptr<Ring>(new Ring(std::move(file))), ""};
    }
}

RingOpening Ring::open(const RingPlace& place, std::optional<Offset> size)
{
    RingOpening opening = openLocked(place, size);
    if (opening.ring) {
        opening.ring->file_->unlock();
    }
    return opening;
}

Offset Ring::size() const
{
    return layout_.start.size;
}

char* Ring::memory() const
{
    return static_cast<char*>(file_->memory()) + memoryStart;
}

bool Ring::read(Offset from, void* to, Offset length) const
{
    if (!contains(from, length)) {
        return false;
    }
    for (auto* out = static_cast<char*>(to); length > 0;) {
        const Offset count = std::min(length, blockSize - from % blockSize);
        if (layout_.reserved.test(from / blockSize)) {
            std::memcpy(out, memory() + from, count);
        } else {
            std::memset(out, 0, count);
        }
        out += count;
        from += count;
        length -= count;
    }
    // What is read next is at least as new.
    std::atomic_thread_fence(std::memory_order_acquire);
    return true;
}

bool Ring::write(Offset to, const void* from, Offset length)
{
    if (!contains(to, length) || !reserve(to, length)) {
        return false;
    }
    // Whoever sees this sees what was written before.
    std::atomic_thread_fence(std::memory_order_release);
    std::memcpy(memory() + to, from, length);
    return true;
}

bool Ring::reserve(Offset to, Offset length)
{
    for (Offset block = to / blockSize, end = (to + length + blockSize - 1) / blockSize; length > 0 && block < end; ++block) {
        if (layout_.reserved.test(block)) {
            continue;
        }
        // One at a time: who fails might give back what another has just got.
        if (!file_->lock()) {
            return false;
        }
        const bool reserved = layout_.reserved.test(block) || file_->reserve(memoryStart + std::uint64_t{block} * blockSize, blockSize);
        if (reserved) {
            layout_.reserved.set(block);
        }
        file_->unlock();
        if (!reserved) {
            return false;
        }
    }
    return true;
}

Faults Ring::faults() const
{
    Faults faults;
    faults.ringOpen = layout_.ringOpen.load() != 0;
    faults.openRefused = layout_.openRefused.load() != 0;
    faults.lostWrites = layout_.lostWrites.load();
    for (std::size_t node = 0; node < nodeCount; ++node) {
        faults.silent[node] = layout_.silent.test(node);
    }
    return faults;
}

bool Ring::changeFaults(const std::function<void(Faults&)>& change)
{
    if (!file_->lock()) {
        return false;
    }
    struct Unlock
    {
        RingFile& file;
        ~Unlock() { file.unlock(); }
    } const unlock{*file_};
    Faults faults = this->faults();
    change(faults);
    layout_.ringOpen = faults.ringOpen;
    layout_.openRefused = faults.openRefused;
    layout_.lostWrites = faults.lostWrites;
    for (std::size_t node = 0; node < nodeCount; ++node) {
        layout_.silent.set(node, faults.silent[node]);
    }
    return true;
}

std::vector<OpenHandle> Ring::handles() const
{
    std::vector<OpenHandle> found;
    if (!file_->lock()) {
        return found;
    }
    for (unsigned place = 0; place < placeCount; ++place) {
        if (file_->isTaken(place)) {
            const RingPlaceEntry& entry = layout_.entries[place];
            found.push_back({static_cast<Node>(entry.node.load()), entry.process.load(), entry.events.load()});
        }
    }
    file_->unlock();
    return found;
}

std::string removeRing(const RingPlace& place)
{
    if (!isRingName(place.ring)) {
        return "\"" + place.ring + "\" is no name of a ring";
    }
    if (!isThere(place)) {
        return noRing(place);
    }
    if (std::string problem = makeFolder(place.folder); !problem.empty()) {
        return problem;
    }
    RingFile file(ringPath(place), RingFile::Missing::fail);
    if (!file.problem().empty() || !file.lock()) {
        return isThere(place) ? file.problem() : noRing(place);
    }
    RingStart start{};
    std::string problem;
    if (contentOf(file, start) == Content::other) {
        problem = ringPath(place) + " is no ring";
    }
    for (unsigned taken = 0; taken < placeCount && problem.empty(); ++taken) {
        if (file.isTaken(taken)) {
            problem = "the ring \"" + place.ring + "\" is in use";
        }
    }
    if (problem.empty() && !file.wasRemoved() && !file.remove()) {
        problem = file.problem();
    }
    file.unlock();
    return problem;
}

} // namespace softwareCard
