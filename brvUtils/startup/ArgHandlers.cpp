#include "brvUtils/startup/ArgHandlers.h"

#include "brvUtils/core/Errors.h"
#include "brvUtils/core/Network.h"
#include "brvUtils/core/Text.h"
#include "brvUtils/os/Network.h"

#include <cstdint>
#include <sstream>

namespace brvUtils::privateArgParser {
namespace {

// All messages are kept for callers to the letter.

std::string quoted(const std::string& flag)
{
    return "Flag '-" + flag + "'";
}

CommandLineError unreadable(const std::string& flag, const std::string& value, const std::string& wanted)
{
    return CommandLineError("Cannot read the argument for flag '-" + flag + "', \"" + value + "\" should be " + wanted + ", but it is not so.");
}

void requireDefault(const std::string& flag, bool asHeld)
{
    if (!asHeld) {
        throw ProgrammingError("Trying to add handling of flag '-" + flag + "' which is described with a different default value");
    }
}

void requireNoDefault(const std::string& flag, const std::string& value)
{
    if (!value.empty()) {
        throw ProgrammingError("Trying to add handling of flag '-" + flag + "' which is described with a non empty default value");
    }
}

bool holdsMore(std::istream& stream)
{
    char next;
    return static_cast<bool>(stream >> next);
}

template <typename Number>
void readNumber(const std::string& flag, const std::string& value, bool checkDefault, const std::string& kind, Number& variable)
{
    const Number before = variable;
    std::istringstream stream(value);
    if (!(stream >> variable)) {
        throw CommandLineError(quoted(flag) + " requires " + kind + " argument, \"" + value + "\" was provided.");
    }
    if (holdsMore(stream)) {
        throw unreadable(flag, value, kind);
    }
    requireDefault(flag, !checkDefault || variable == before);
}

} // namespace

Handler::~Handler() = default;

Handler* BooleanHandler::clone() const { return new BooleanHandler(*this); }
Handler* StringHandler::clone() const { return new StringHandler(*this); }
Handler* FileHandler::clone() const { return new FileHandler(*this); }
Handler* DirHandler::clone() const { return new DirHandler(*this); }
Handler* IntHandler::clone() const { return new IntHandler(*this); }
Handler* FloatHandler::clone() const { return new FloatHandler(*this); }
Handler* InetHandler::clone() const { return new InetHandler(*this); }
Handler* GUIPosHandler::clone() const { return new GUIPosHandler(*this); }
Handler* GUISizeHandler::clone() const { return new GUISizeHandler(*this); }
Handler* HelpHandler::clone() const { return new HelpHandler(*this); }

std::string BooleanHandler::getType() const { return "bool"; }
std::string StringHandler::getType() const { return "string"; }
std::string FileHandler::getType() const { return "file"; }
std::string DirHandler::getType() const { return "dir"; }
std::string IntHandler::getType() const { return "int"; }
std::string FloatHandler::getType() const { return "float"; }
std::string InetHandler::getType() const { return "inet"; }
std::string GUIPosHandler::getType() const { return "guiPos"; }
std::string GUISizeHandler::getType() const { return "guiSize"; }
std::string HelpHandler::getType() const { return "help"; }

void BooleanHandler::process(const std::string& value, bool checkDefault)
{
    const bool before = variable_;
    if (value.empty() || strCompareCI(value, "true") || strCompareCI(value, "on")) {
        variable_ = true;
    } else if (strCompareCI(value, "false") || strCompareCI(value, "off")) {
        variable_ = false;
    } else {
        throw CommandLineError(quoted(getFlag()) + " requires an extra argument like \"True\" or \"OFF\", \"" + value + "\" was provided.");
    }
    requireDefault(getFlag(), !checkDefault || variable_ == before);
}

void StringHandler::process(const std::string& value, bool checkDefault)
{
    if (!checkDefault && value.empty()) {
        throw CommandLineError(quoted(getFlag()) + " requires an extra argument, none was provided.");
    }
    const bool asHeld = variable_ == value;
    variable_ = value;
    requireDefault(getFlag(), !checkDefault || asHeld);
}

void IntHandler::process(const std::string& value, bool checkDefault)
{
    readNumber(getFlag(), value, checkDefault, "an integer", variable_);
}

void FloatHandler::process(const std::string& value, bool checkDefault)
{
    readNumber(getFlag(), value, checkDefault, "a float", variable_);
}

void InetHandler::process(const std::string& value, bool checkDefault)
{
    if (checkDefault) {
        requireNoDefault(getFlag(), value);
        return;
    }
    initNetworkSystem();
    std::uint32_t address = os::dottedAddress(value);
    if (address == os::noAddress && !os::lookUpHost(value, address)) {
        // Kept for callers: the sockets layer stays in use after this fault.
        throw unreadable(getFlag(), value, "a valid IP adress or a known computer name");
    }
    variable_ = address;
    releaseNetworkSystem();
}

void GUIXYHandler::process(const std::string& value, bool checkDefault)
{
    if (checkDefault) {
        requireNoDefault(getFlag(), value);
        return;
    }
    const std::size_t position = value.find(separator_);
    if (position != std::string::npos) {
        std::string numbers = value;
        numbers[position] = ' ';
        std::istringstream stream(numbers);
        const bool bothRead = static_cast<bool>(stream >> first_ >> second_);
        if (holdsMore(stream)) {
            throw unreadable(getFlag(), value, "a float"); // kept for callers
        }
        if (bothRead) {
            given_ = true;
            return;
        }
    }
    given_ = false;
    throw CommandLineError("Flag '-" + getFlag() + " requires a int" + separator_ + "int argument, \"" + value + "\" was provided.");
}

void HelpHandler::process(const std::string& value, bool checkDefault)
{
    if (checkDefault) {
        requireNoDefault(getFlag(), value);
        return;
    }
    throw CommandLineError("");
}

} // namespace brvUtils::privateArgParser
