#include "brvUtils/startup/ArgParser.h"

#include "brvUtils/core/Errors.h"
#include "brvUtils/os/CommandLine.h"
#include "brvUtils/os/Process.h"

#include <iostream>
#include <sstream>

namespace brvUtils {

using namespace privateArgParser;

bool ArgParser::fbs_ = false;

ArgParser::ArgParser(int argc, const char* const* argv, const std::string& processName, const std::string& definitions)
    : processName_(processName)
{
    descriptions_ = {
        { "v", { "bool", "false", "Display debug and warning messages on Studio log" } },
        { "p", { "string", processName, "Process name" } },
        { "c", { "string", "", "Configuration name" } },
        { "cfg", { "string", "", "Config file" } },
        { "rt", { "bool", "false", "Execute in realtime" } },
        { "hp", { "bool", "false", "Execute with high priority" } },
        { "u", { "proc", "-1", "Select on which processor we want to run" } },
        { "fbs", { "bool", "false", "enable frequency based scheduler (FBS)" } },
    };
    takeArguments(argc, argv);
    addBooleanHandler("v", verbose_);
    addStringHandler("p", processName_);
    addStringHandler("c", configName_);
    addStringHandler("cfg", configFile_);
    addBooleanHandler("rt", realTime_);
    addBooleanHandler("hp", highPriority_);
    addBooleanHandler("fbs", fbs_);
    for (const char* flag : { "h", "H", "?" }) {
        insert({ flag, HandlerPtr(new HelpHandler(flag)) });
    }
    // Kept for callers: the messages about a bad processor number name the program, not the flag.
    insert({ "u", HandlerPtr(new ProcessorHandler(arguments_.empty() ? "" : arguments_.front(), processor_)) });
    setArgsDefs(definitions);
}

ArgParser::ArgParser(int argc, const char* const* argv, const std::string& definitions)
{
    takeArguments(argc, argv);
    setArgsDefs(definitions);
}

ArgParser::ArgParser(const ArgParser&) = default;
ArgParser& ArgParser::operator=(const ArgParser&) = default;
ArgParser::~ArgParser() = default;

void ArgParser::takeArguments(int argc, const char* const* argv)
{
    const os::ErrorCode result = os::commandLine(arguments_);
    if (result == os::error::none) {
        return;
    }
    if (result != os::error::notSupported) {
        std::cerr << "CommandLineToArgvW failed: using local8 standard args" << std::endl;
    }
    arguments_.assign(argv, argv + argc);
}

bool ArgParser::isFlag(const char* text) const
{
    return text[0] == '-' && text[1] != '\0' && handlers_.count(text + 1) != 0;
}

bool ArgParser::parse()
{
    remainingArguments_.clear();
    bool result = true;
    for (const auto& [flag, description] : descriptions_) {
        if (handlers_.count(flag) == 0) {
            errorMessage_ += "Described argument '" + flag + "' has no handler\n";
            result = false;
        }
    }
    for (std::size_t i = 1; i < arguments_.size(); ++i) {
        const std::string& argument = arguments_[i];
        if (argument.empty() || argument[0] != '-') {
            remainingArguments_.push_back(argument);
            continue;
        }
        const auto handler = handlers_.find(argument.substr(1));
        if (handler == handlers_.end()) {
            errorMessage_ += "Unknown flag '" + argument.substr(1) + "'\n";
            remainingArguments_.push_back(argument);
            result = false;
            continue;
        }
        std::string value;
        if (i + 1 < arguments_.size() && !isFlag(arguments_[i + 1].c_str())) {
            value = arguments_[++i];
        }
        try {
            handler->second->process(value, false);
        } catch (const CommandLineError& error) {
            errorMessage_ += error.what() + std::string("\n");
            result = false;
        }
    }
    if (result) {
        applyPriority();
    } else {
        appendUsage();
    }
    return result;
}

void ArgParser::appendUsage()
{
    errorMessage_ += processName_ + " usage:\n";
    for (const auto& [flag, description] : descriptions_) {
        errorMessage_ += "\t-" + flag + " (" + description.type + "): " + description.help;
        if (!description.defaultValue.empty()) {
            errorMessage_ += " (default value: " + description.defaultValue + ")";
        }
        errorMessage_ += "\n";
    }
}

void ArgParser::applyPriority()
{
    if (!realTime_ && !highPriority_) {
        return;
    }
    const os::PriorityClass priority = realTime_ ? os::PriorityClass::realTime : os::PriorityClass::high;
    if (os::setPriorityClass(priority) != os::error::none) {
        errorMessage_ += "Failed to set real time mode.\n";
    }
}

const std::string& ArgParser::getErrorMessage() const
{
    return errorMessage_;
}

void ArgParser::printErrorMessage(std::ostream& out, std::ostream& (*prefix)(std::ostream&)) const
{
    std::istringstream lines(errorMessage_);
    for (std::string line; std::getline(lines, line);) {
        if (line.empty()) {
            continue;
        }
        if (prefix != nullptr) {
            prefix(out);
        }
        out << line << std::endl;
    }
}

bool ArgParser::getVerbose() const
{
    return verbose_;
}

const std::string& ArgParser::getProcessName() const
{
    return processName_;
}

const std::string& ArgParser::getConfigName() const
{
    return configName_;
}

const std::string& ArgParser::getConfigFile() const
{
    return configFile_;
}

const std::vector<std::string>& ArgParser::getRemainingArgs() const
{
    return remainingArguments_;
}

const int& ArgParser::getProcessor() const
{
    return processor_;
}

bool ArgParser::isHighPriority() const
{
    return highPriority_;
}

bool ArgParser::isRealTime() const
{
    return realTime_;
}

bool ArgParser::isFbs()
{
    return fbs_;
}

} // namespace brvUtils
