#include "Completion.h"

#include "BashScript.h"

#include <algorithm>
#include <iterator>

namespace brvTool {

namespace {

bool startsWith(const std::string& text, const std::string& start)
{
    return text.compare(0, start.size(), start) == 0;
}

bool isOption(const std::string& word)
{
    return word.size() > 1 && word[0] == '-';
}

/// The option of that name, of this command or of one that it belongs to.
CLI::Option* findOption(CLI::App* command, const std::string& word)
{
    for (; command != nullptr; command = command->get_parent()) {
        if (CLI::Option* const option = command->get_option_no_throw(word)) {
            return option;
        }
    }
    return nullptr;
}

CLI::App* findCommand(CLI::App* parent, const std::string& word)
{
    const auto all = parent->get_subcommands([](CLI::App*) { return true; });
    const auto found = std::find_if(all.begin(), all.end(), [&](CLI::App* each) { return each->get_name() == word; });
    return found != all.end() ? *found : nullptr;
}

/// The argument that the given number of arguments stands before.
CLI::Option* argumentBehind(CLI::App* command, int count)
{
    for (CLI::Option* const option : command->get_options()) {
        if (option->get_positional() && (count -= option->get_items_expected_max()) < 0) {
            return option;
        }
    }
    return nullptr;
}

void addOptions(std::vector<std::string>& names, CLI::App* command)
{
    for (; command != nullptr; command = command->get_parent()) {
        for (CLI::Option* const option : command->get_options()) {
            if (!option->get_group().empty()) { // or it is hidden
                for (const std::string& name : option->get_lnames()) {
                    names.push_back("--" + name);
                }
            }
        }
    }
}

void addValues(std::vector<std::string>& names, const CLI::Option* option, const Commands& commands)
{
    const std::string type = option != nullptr ? option->get_type_name() : "";
    if (type == "FILE" || type == "FOLDER") {
        names.push_back(type == "FILE" ? ":files" : ":folders");
        return;
    }
    for (std::string& name : commands.namesOf(type)) {
        names.push_back(std::move(name));
    }
}

} // namespace

std::string bashCompletion()
{
    return bashScript;
}

std::vector<std::string> completionsOf(const std::vector<std::string>& words, Commands& commands)
{
    CLI::App* command = &commands.top();
    const CLI::Option* valueOf = nullptr; // the option whose value comes next
    int arguments = 0;
    bool optionsEnd = false;
    for (std::size_t i = 0; i + 1 < words.size(); ++i) {
        const std::string& word = words[i];
        if (valueOf != nullptr) {
            valueOf = nullptr;
        } else if (!optionsEnd && word == "--") {
            optionsEnd = true;
        } else if (!optionsEnd && isOption(word)) {
            const CLI::Option* const option = findOption(command, word);
            valueOf = option != nullptr && option->get_items_expected_max() > 0 ? option : nullptr;
        } else if (CLI::App* const next = findCommand(command, word)) {
            command = next;
        } else {
            ++arguments;
        }
    }
    std::vector<std::string> names;
    if (valueOf != nullptr) {
        addValues(names, valueOf, commands);
    } else if (!optionsEnd && isOption(words.back() + "-") && startsWith(words.back(), "-")) {
        addOptions(names, command);
    } else {
        for (const CLI::App* const each : command->get_subcommands([](CLI::App*) { return true; })) {
            names.push_back(each->get_name());
        }
        addValues(names, argumentBehind(command, arguments), commands);
    }
    const auto doesNotFit = [&](const std::string& name) { return name[0] != ':' && !startsWith(name, words.back()); };
    names.erase(std::remove_if(names.begin(), names.end(), doesNotFit), names.end());
    std::vector<std::string> once; // each command has --help
    std::copy_if(names.begin(), names.end(), std::back_inserter(once),
        [&](const std::string& name) { return std::find(once.begin(), once.end(), name) == once.end(); });
    return once;
}

} // namespace brvTool
