#include "Command.h"

namespace brvTool {

namespace {

CLI::App& addTo(CLI::App& parent, const Introduction& introduction)
{
    CLI::App& command = *parent.add_subcommand(introduction.name, introduction.purpose);
    std::string footer = introduction.more.empty() ? "" : introduction.more + "\n";
    footer += introduction.examples.size() > 1 ? "Examples:" : "Example:";
    for (const std::string& example : introduction.examples) {
        footer += "\n  " + example;
    }
    command.footer(footer);
    command.fallthrough();
    return command;
}

} // namespace

CLI::App& Commands::addGroup(const Introduction& introduction)
{
    CLI::App& group = addTo(app_, introduction);
    group.require_subcommand(1);
    return group;
}

CLI::App& Commands::add(CLI::App& parent, const Introduction& introduction, Work work)
{
    CLI::App& command = addTo(parent, introduction);
    command.final_callback([this, work = std::move(work)] { chosen_ = work; });
    return command;
}

std::vector<std::string> Commands::namesOf(const std::string& typeName) const
{
    const auto found = names_.find(typeName);
    try {
        return found != names_.end() ? found->second() : std::vector<std::string>();
    } catch (const std::exception&) {
        return {}; // a shell that completes wants no complaints
    }
}

} // namespace brvTool
