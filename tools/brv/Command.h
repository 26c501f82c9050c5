#pragma once

#include "Output.h"

#include <CLI/CLI.hpp>

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace brvTool {

/// Exit codes.
constexpr int good = 0;
constexpr int somethingIsWrong = 1; ///< Or was not found.
constexpr int wrongCommandLine = 2;

/// Does a command and gives the exit code. \throw Fault, or what the library throws: told to the user, somethingIsWrong.
using Work = std::function<int(Output&)>;

/// How a command presents itself.
struct Introduction
{
    std::string name;
    std::string purpose; ///< One line without a full stop.
    std::vector<std::string> examples; ///< Whole command lines.
    std::string more = {}; ///< Lines that its help shows above the examples.
};

/// The commands of the program and what hangs on them.
///
///     CLI::App& command = commands.add(commands.top(), {"ports", "Shows who holds which port", {"brv ports --json"}},
///         [](Output& output) { output.show(...); return good; });
///     command.add_option(...);
///
/// Options hold references: what they fill must live as long as the program; the work is done after all are filled.
class Commands
{
public:
    explicit Commands(CLI::App& app) : app_(app) {}

    CLI::App& top() { return app_; }

    /// A command that only holds others.
    CLI::App& addGroup(const Introduction& introduction);
    /// A command. Its options and arguments are added by the caller.
    CLI::App& add(CLI::App& parent, const Introduction& introduction, Work work);

    /// The command that was given; empty when there is none.
    const Work& chosen() const { return chosen_; }

    using Names = std::function<std::vector<std::string>()>;
    /// What can stand for options and arguments of that type name (`option->type_name("CONFIGURATION")`), for the shell to
    /// complete. "FILE" and "FOLDER" are completed by the shell itself.
    void completes(const std::string& typeName, Names names) { names_[typeName] = std::move(names); }
    /// Those names; empty when nobody knows them or they cannot be found out.
    std::vector<std::string> namesOf(const std::string& typeName) const;

private:
    CLI::App& app_;
    Work chosen_;
    std::map<std::string, Names> names_;
};

/// Each adds its commands.
/// @{
void addConfig(Commands& commands);
void addVersion(Commands& commands);
void addData(Commands& commands);
void addDoctor(Commands& commands);
void addIpc(Commands& commands);
void addPorts(Commands& commands);
void addJitter(Commands& commands);
/// @}

} // namespace brvTool
