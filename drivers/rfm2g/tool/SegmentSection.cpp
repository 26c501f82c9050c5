#include "SegmentSection.h"

#include "Fault.h"

#include <Utilities/ConfigFile.h>

#include <cinttypes>
#include <cstdio>

namespace rfm2gCard {

namespace {

constexpr Offset checksumSize = 4; // bytes

} // namespace

SegmentSection::SegmentSection(const std::string& file, const std::string& section, Offset size)
    : name_(file + ", section [" + section + "]")
    , size_(size)
{
    Utilities::ConfigFile config;
    if (!config.load(file)) {
        throw Fault(file + " cannot be read");
    }
    if (config.getVariablesNames(section).empty()) {
        throw Fault(file + " has no section [" + section + "]");
    }
    config.setSection(section);
    std::string text;
    if (!config.readString("Type", text) || text != "VMIC") {
        throw Fault(name_ + ": the segment is not on a card, which takes \"Type = VMIC\"");
    }
    if (!config.readString("BaseAddress", text)) {
        throw Fault(name_ + " has no BaseAddress");
    }
    if (!config.readHexaUnsignedInt("BaseAddress", address_)) {
        throw Fault(name_ + ": BaseAddress \"" + text + "\" is no hexadecimal number of 32 bits");
    }
}

void SegmentSection::requireFitting(Offset card) const
{
    const std::uint64_t end = std::uint64_t{address_} + size_ + partCount * checksumSize;
    if (end > card) {
        char text[80];
        std::snprintf(text, sizeof text, "end at 0x%" PRIx64 ", beyond the card's 0x%" PRIx32 " bytes", end, card);
        throw Fault(name_ + ": the segment and its checksums " + text);
    }
}

Offset SegmentSection::checksumAddress(int part) const
{
    return address_ + size_ + static_cast<Offset>(part) * checksumSize;
}

std::uint32_t checksum(const unsigned char* bytes, std::size_t count)
{
    std::uint32_t sum = 0;
    for (const unsigned char* byte = bytes; byte != bytes + count; ++byte) {
        sum += *byte < 0x80 ? *byte : *byte - 0x100U;
    }
    return sum;
}

} // namespace rfm2gCard
