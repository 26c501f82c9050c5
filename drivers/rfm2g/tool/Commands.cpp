#include "Commands.h"

#include "Fault.h"
#include "FaultTexts.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <functional>
#include <memory>
#include <tuple>
#include <vector>

namespace rfm2gCard {

using softwareCard::OpenHandle;
using softwareCard::Ring;

namespace {

constexpr Offset mebibyte = 1024 * 1024;

std::unique_ptr<Ring> openRing(const RingPlace& place)
{
    softwareCard::RingOpening opening = Ring::open(place);
    if (opening.ring == nullptr) {
        throw Fault(opening.problem);
    }
    return std::move(opening.ring);
}

void changeFaults(const RingPlace& place, const std::function<void(Faults&)>& change)
{
    if (!openRing(place)->changeFaults(change)) {
        throw Fault("the ring \"" + place.ring + "\" cannot be locked");
    }
}

std::string hexadecimal(Offset value)
{
    char text[16];
    std::snprintf(text, sizeof text, "0x%" PRIx32, value);
    return text;
}

bool exists(const RingPlace& place)
{
    const std::vector<std::string> names = softwareCard::ringNames(place.folder);
    return std::find(names.begin(), names.end(), place.ring) != names.end();
}

std::string eventsOf(const OpenHandle& handle)
{
    std::string text;
    for (int event = 0; event < 32; ++event) {
        if ((handle.events >> event & 1) != 0) {
            text += (text.empty() ? "" : ", ") + std::to_string(event);
        }
    }
    return text.empty() ? "no events" : "events " + text;
}

/// A line for each handle, sorted.
std::vector<std::string> linesOf(std::vector<OpenHandle> handles)
{
    const auto key = [](const OpenHandle& handle) { return std::tie(handle.node, handle.process, handle.events); };
    std::sort(handles.begin(), handles.end(), [&](const OpenHandle& left, const OpenHandle& right) { return key(left) < key(right); });
    std::vector<std::string> lines;
    for (const OpenHandle& handle : handles) {
        lines.push_back("node " + std::to_string(handle.node) + ": process " + std::to_string(handle.process) + ", " + eventsOf(handle));
    }
    return lines;
}

void tell(const std::string& indent, const std::vector<std::string>& lines)
{
    for (const std::string& line : lines) {
        std::printf("%s%s\n", indent.c_str(), line.c_str());
    }
}

void dumpRow(Offset from, const unsigned char* bytes, Offset count)
{
    constexpr Offset width = 16;
    std::string digits, letters;
    for (Offset i = 0; i < width; ++i) {
        char pair[8] = "   ";
        if (i < count) {
            std::snprintf(pair, sizeof pair, " %02x", bytes[i]);
            letters += bytes[i] >= 0x20 && bytes[i] < 0x7f ? static_cast<char>(bytes[i]) : '.';
        }
        digits += (i == width / 2 ? " " : "") + std::string(pair);
    }
    std::printf("%08" PRIx32 " %s  |%s|\n", from, digits.c_str(), letters.c_str());
}

void damage(Ring& ring, Offset at)
{
    std::uint32_t word = 0;
    if (!ring.read(at, &word, sizeof word)) {
        throw Fault("a word at " + hexadecimal(at) + " ends beyond the card's " + hexadecimal(ring.size()) + " bytes");
    }
    const std::uint32_t damaged = ~word;
    if (!ring.write(at, &damaged, sizeof damaged)) {
        throw Fault("there is too little space for the ring");
    }
    std::printf("word at 0x%" PRIx32 ": 0x%08" PRIx32 " is now 0x%08" PRIx32 "\n", at, word, damaged);
}

} // namespace

void list(const RingPlace& place)
{
    bool any = false;
    std::string problems;
    for (const std::string& name : softwareCard::ringNames(place.folder)) {
        if (!place.ring.empty() && name != place.ring) {
            continue;
        }
        const softwareCard::RingOpening opening = Ring::open({place.folder, name});
        if (opening.missing) {
            continue; // it was removed meanwhile, or is not finished
        }
        any = true;
        if (opening.ring == nullptr) {
            problems += (problems.empty() ? "" : "; ") + opening.problem;
            continue;
        }
        std::printf("ring %s: %" PRIu32 " MB\n", name.c_str(), opening.ring->size() / mebibyte);
        const std::vector<std::string> handles = linesOf(opening.ring->handles());
        tell("  ", handles.empty() ? std::vector<std::string>{"no nodes"} : handles);
        tell("  fault ", faultsThatAreOn(opening.ring->faults()));
    }
    if (!problems.empty()) {
        throw Fault(problems);
    }
    if (!any && !place.ring.empty()) {
        throw Fault("there is no ring \"" + place.ring + "\"");
    }
    if (!any) {
        std::printf("no rings in %s\n", (place.folder.empty() ? softwareCard::defaultFolder() : place.folder).c_str());
    }
}

void show(const RingPlace& place, Offset from, Offset length)
{
    constexpr Offset width = 16;
    const std::unique_ptr<Ring> ring = openRing(place);
    if (from > ring->size() || length > ring->size() - from) {
        throw Fault(std::to_string(length) + " bytes at " + hexadecimal(from) + " end beyond the card's " + hexadecimal(ring->size()) + " bytes");
    }
    unsigned char before[width] = {};
    bool starred = false;
    for (Offset done = 0; done < length; done += width) {
        unsigned char row[width] = {};
        const Offset count = std::min(width, length - done);
        ring->read(from + done, row, count);
        const bool last = length - done <= width;
        if (done > 0 && !last && std::equal(row, row + width, before)) {
            std::printf("%s", starred ? "" : "*\n");
            starred = true;
            continue;
        }
        dumpRow(from + done, row, count);
        std::copy(row, row + width, before);
        starred = false;
    }
}

void showFaults(const RingPlace& place, const std::string& name)
{
    const Faults faults = openRing(place)->faults();
    for (const std::string& each : faultNames) {
        if (name.empty() || name == each) {
            std::printf("%s\n", faultState(faults, each).c_str());
        }
    }
}

void setFault(const RingPlace& place, const std::string& name, const std::vector<std::string>& values)
{
    Faults now;
    changeFaults(place, [&](Faults& faults) { now = faults = withFault(faults, name, values); });
    std::printf("%s\n", faultState(now, name).c_str());
}

void clearFaults(const RingPlace& place)
{
    changeFaults(place, [](Faults& faults) { faults = Faults(); });
    std::printf("all faults off\n");
}

void damage(const RingPlace& place, Offset at)
{
    damage(*openRing(place), at);
}

void damage(const RingPlace& place, const SegmentName& segment, int part)
{
    const SegmentSection section(segment.file, segment.section, segment.size);
    const std::unique_ptr<Ring> ring = openRing(place);
    section.requireFitting(ring->size());
    damage(*ring, section.checksumAddress(part));
}

void writeVersion(const RingPlace& place, const SegmentName& segment, std::int16_t version, Offset cardSize)
{
    const SegmentSection section(segment.file, segment.section, segment.size);
    if (!exists(place)) {
        section.requireFitting(cardSize); // or a ring would be made for nothing
    }
    const softwareCard::RingOpening opening = Ring::open(place, cardSize);
    if (opening.ring == nullptr) {
        throw Fault(opening.problem);
    }
    section.requireFitting(opening.ring->size());
    const auto bits = static_cast<std::uint16_t>(version);
    const unsigned char record[] = {static_cast<unsigned char>(bits & 0xff), static_cast<unsigned char>(bits >> 8)};
    const std::uint32_t sum = checksum(record, sizeof record);
    const unsigned char word[] = {static_cast<unsigned char>(sum), static_cast<unsigned char>(sum >> 8),
        static_cast<unsigned char>(sum >> 16), static_cast<unsigned char>(sum >> 24)};
    if (!opening.ring->write(section.address(), record, sizeof record) || !opening.ring->write(section.checksumAddress(0), word, sizeof word)) {
        throw Fault("there is too little space for the ring");
    }
    std::printf("%s: version %d at 0x%" PRIx32 ", its checksum at 0x%" PRIx32 " of ring %s\n", segment.section.c_str(), version,
        section.address(), section.checksumAddress(0), place.ring.c_str());
}

void remove(const RingPlace& place)
{
    const std::string problem = softwareCard::removeRing(place);
    if (problem.empty()) {
        std::printf("ring %s is removed\n", place.ring.c_str());
        return;
    }
    std::string users;
    if (const std::unique_ptr<Ring> ring = Ring::open(place).ring) {
        for (const std::string& line : linesOf(ring->handles())) {
            users += (users.empty() ? ": " : "; ") + line;
        }
    }
    throw Fault(problem + users);
}

} // namespace rfm2gCard
