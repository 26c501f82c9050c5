#include "FaultTexts.h"

#include "Fault.h"

#include <charconv>
#include <cstdint>

namespace rfm2gCard {

const std::vector<std::string> faultNames = {"ring-open", "open-refused", "lost-writes", "silent"};

namespace {

/// \throw Fault unless the text is a number from `least` to `most`. \param what it is.
std::uint32_t number(const std::string& text, const std::string& what, std::uint32_t least, std::uint32_t most)
{
    std::uint32_t value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, failure] = std::from_chars(text.data(), end, value);
    if (failure != std::errc() || stop != end || value < least || value > most) {
        throw Fault(what + " is a number from " + std::to_string(least) + " to " + std::to_string(most) + ", not \"" + text + "\"");
    }
    return value;
}

bool isOn(const std::string& fault, const std::string& text)
{
    if (text != "on" && text != "off") {
        throw Fault(fault + " is on or off, not \"" + text + "\"");
    }
    return text == "on";
}

std::string silentNodes(const Faults& faults)
{
    std::string text;
    for (std::size_t node = 0; node < faults.silent.size(); ++node) {
        if (faults.silent[node]) {
            text += (text.empty() ? "" : ", ") + std::to_string(node);
        }
    }
    return text;
}

/// What stands behind the fault's name; empty when it is off.
std::string setting(const Faults& faults, const std::string& name)
{
    if (name == "silent") {
        return silentNodes(faults);
    }
    if (name == "lost-writes") {
        return faults.lostWrites != 0 ? std::to_string(faults.lostWrites) : "";
    }
    return (name == "ring-open" ? faults.ringOpen : faults.openRefused) ? "on" : "";
}

} // namespace

std::string faultState(const Faults& faults, const std::string& name)
{
    const std::string text = setting(faults, name);
    return name + " " + (text.empty() ? "off" : text);
}

std::vector<std::string> faultsThatAreOn(const Faults& faults)
{
    std::vector<std::string> texts;
    for (const std::string& name : faultNames) {
        if (!setting(faults, name).empty()) {
            texts.push_back(faultState(faults, name));
        }
    }
    return texts;
}

Faults withFault(Faults faults, const std::string& name, const std::vector<std::string>& values)
{
    const std::string& first = values.front();
    const bool isNode = name == "silent" && first != "off";
    if (values.size() > (isNode ? 2U : 1U)) {
        throw Fault("\"" + values.back() + "\" is too much behind " + name + " " + first);
    }
    if (isNode) {
        faults.silent.set(number(first, "the node of silent", 0, softwareCard::nodeCount - 1), values.size() == 1 || isOn(name + " " + first, values[1]));
    } else if (name == "silent") {
        faults.silent.reset();
    } else if (name == "lost-writes") {
        faults.lostWrites = first == "off" ? 0 : number(first, "the N of lost-writes, of which each Nth is lost,", 1, UINT32_MAX);
    } else {
        (name == "ring-open" ? faults.ringOpen : faults.openRefused) = isOn(name, first);
    }
    return faults;
}

} // namespace rfm2gCard
