#include "ModuleList.h"

#include <brvUtils/core/Errors.h>
#include <brvUtils/startup/ModulePaths.h>

#include <algorithm>
#include <filesystem>
#include <sstream>

namespace suite {

namespace {

void refusePath(const std::string& name)
{
    if (name.find_first_of("/\\") != std::string::npos) {
        throw brvUtils::ConfigurationError(name + " is no name of a module but a path");
    }
}

bool isVariableName(const std::string& text)
{
    constexpr const char* letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_";
    const std::string digits = "0123456789";
    return !text.empty() && text.find_first_not_of(letters + digits) == text.npos && digits.find(text.front()) == text.npos;
}

/// Takes the words in front of the module, as a shell does. False when nothing but blanks comes behind the last of them.
bool readVariables(std::istream& words, ModuleCommand& command)
{
    while (words >> command.name) {
        const std::size_t equals = command.name.find('=');
        if (equals == command.name.npos) {
            return true;
        }
        const std::string variable = command.name.substr(0, equals);
        if (!isVariableName(variable)) {
            throw brvUtils::ConfigurationError("\"" + command.name + "\" sets no variable: names are letters, digits and underscores");
        }
        command.variables.emplace_back(variable, command.name.substr(equals + 1));
    }
    if (!command.variables.empty()) {
        throw brvUtils::ConfigurationError("no module stands behind the variable " + command.variables.back().first);
    }
    return false;
}

/// The program of that name, with the extension that this one has.
std::string programIn(const std::string& folder, const std::string& name)
{
    const auto extension = std::filesystem::u8path(brvUtils::GetModuleFilePath()).extension();
    const auto path = std::filesystem::u8path(folder + "/" + name) += extension;
    if (!std::filesystem::is_regular_file(path)) {
        throw brvUtils::ConfigurationError("there is no module " + name + " in " + folder);
    }
    return path.u8string();
}

} // namespace

std::vector<ModuleCommand> readModuleList(
    const std::string& list, const std::string& folder, const std::vector<std::string>& common)
{
    std::vector<ModuleCommand> commands;
    std::istringstream entries(list);
    for (std::string entry; std::getline(entries, entry, ',');) {
        std::istringstream words(entry);
        ModuleCommand command;
        if (!readVariables(words, command)) {
            continue;
        }
        refusePath(command.name);
        command.program = programIn(folder, command.name);
        command.arguments = common;
        for (std::string word; words >> word;) {
            if (!command.arguments.empty() && command.arguments.back() == "-p") {
                command.name = word;
                refusePath(word);
            }
            command.arguments.push_back(word);
        }
        const auto isNamesake = [&](const ModuleCommand& other) { return other.name == command.name; };
        if (std::any_of(commands.begin(), commands.end(), isNamesake)) {
            throw brvUtils::ConfigurationError("two modules are called " + command.name + "; -p gives one another name");
        }
        commands.push_back(command);
    }
    if (commands.empty()) {
        throw brvUtils::ConfigurationError("no modules to start");
    }
    return commands;
}

} // namespace suite
