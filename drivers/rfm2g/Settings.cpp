#include "rfm2g/Settings.h"

#include "rfm2g/System.h"

#include <cstring>

namespace softwareCard {

namespace {

std::optional<unsigned> number(const std::string& text, unsigned largest)
{
    unsigned value = 0;
    for (const char c : text) {
        if (c < '0' || c > '9' || (value = value * 10 + static_cast<unsigned>(c - '0')) > largest) {
            return std::nullopt;
        }
    }
    return text.empty() ? std::nullopt : std::optional(value);
}

std::optional<Settings> malformed(const char* name, const char* expected, std::string& problem)
{
    problem = std::string(name) + " is \"" + variable(name) + "\" instead of " + expected;
    return std::nullopt;
}

} // namespace

std::optional<Settings> settingsOf(const std::string& device, std::string& problem)
{
    const std::size_t prefix = std::strlen(devicePrefix);
    if (device.compare(0, prefix, devicePrefix) != 0) {
        return std::nullopt;
    }
    std::optional<unsigned> node = number(device.substr(prefix), nodeCount - 1);
    if (!node) {
        return std::nullopt;
    }
    Settings settings{{variable("RFM2G_FOLDER"), variable("RFM2G_RING")}, 0, 0};
    if (settings.place.ring.empty()) {
        settings.place.ring = defaultRing;
    }
    if (!isRingName(settings.place.ring)) {
        return malformed("RFM2G_RING", "1 to 64 letters, digits, dots, underscores and hyphens", problem);
    }
    if (const std::string text = variable("RFM2G_NODE"); !text.empty() && !(node = number(text, nodeCount - 1))) {
        return malformed("RFM2G_NODE", "a number from 0 to 255", problem);
    }
    settings.node = static_cast<Node>(*node);
    const std::string text = variable("RFM2G_SIZE");
    const std::optional<unsigned> mebibytes = text.empty() ? 64 : number(text, 256);
    if (mebibytes != 64 && mebibytes != 128 && mebibytes != 256) {
        return malformed("RFM2G_SIZE", "64, 128 or 256 (MB)", problem);
    }
    settings.size = *mebibytes << 20;
    return settings;
}

} // namespace softwareCard
