#include "Remedies.h"

#include <filesystem>

namespace brvTool {

namespace {

constexpr bool commandPrompt = std::filesystem::path::preferred_separator == '\\';

std::string quoted(const std::string& text)
{
    if (commandPrompt) {
        return "\"" + text + "\"";
    }
    std::string inside;
    for (const char each : text) {
        inside += each == '\'' ? std::string("'\\''") : std::string(1, each);
    }
    return "'" + inside + "'";
}

/// As the shell of this computer writes it.
std::string pathText(const std::string& path)
{
    return quoted(std::filesystem::u8path(path).make_preferred().u8string());
}

} // namespace

std::string makeFile(const std::string& path)
{
    return (commandPrompt ? "type nul > " : "touch ") + pathText(path);
}

std::string writeLine(const std::string& line, const std::string& path)
{
    // Without quotes the shell takes [Common] for a pattern of file names; the other one would write them.
    return "echo " + (commandPrompt ? line + ">" : quoted(line) + " > ") + pathText(path);
}

std::string makeFolder(const std::string& path)
{
    return (commandPrompt ? "mkdir " : "mkdir -p ") + pathText(path);
}

std::string defineVariable(const std::string& name, const std::string& value)
{
    return (commandPrompt ? "set " : "export ") + name + "=" + value;
}

std::string editEntry(const std::string& file, const std::string& section, const std::string& name, const std::string& value)
{
    return "in " + file + ", section [" + section + "]: " + name + " = " + value;
}

} // namespace brvTool
