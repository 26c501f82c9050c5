#include "Command.h"
#include "Completion.h"

#include <StudioVersion/Version.h>
#include <Utilities/Encoding.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace {

using namespace brvTool;

/// In the code page of the process, as main gets them.
std::vector<std::string> utf8Arguments(int argc, char** argv)
{
    using namespace Utilities::Encoding;
    std::vector<std::string> arguments;
    for (int i = 1; i < argc; ++i) {
        arguments.push_back(Transcode(Transcode(argv[i], Mode::Local8Bit), Mode::Utf8));
    }
    return arguments;
}

/// Whether it is among the options, also where the command line is wrong otherwise.
bool given(const std::vector<std::string>& arguments, const std::string& option)
{
    const auto end = std::find(arguments.begin(), arguments.end(), "--");
    return std::find(arguments.begin(), end, option) != end;
}

std::string linesOf(const std::vector<std::string>& lines)
{
    std::string text;
    for (const std::string& line : lines) {
        text += line + "\n";
    }
    return text;
}

int run(CLI::App& app, Commands& commands, const std::vector<std::string>& arguments, const std::string& completionOf, Output& output)
{
    try {
        app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend())); // the parser takes the last one first
    } catch (const CLI::CallForVersion& version) {
        output.show({Fields{"", {{{"version", "brv"}, version.what()}}, ""}});
        return good;
    } catch (const CLI::CallForHelp&) {
        output.write(app.help());
        return good;
    } catch (const CLI::ParseError& fault) {
        output.complain(std::string(fault.what()) + "; --help tells more");
        return wrongCommandLine;
    }
    if (!completionOf.empty()) {
        if (completionOf != "bash") {
            output.complain("there is a completion for bash, none for \"" + completionOf + "\"");
            return wrongCommandLine;
        }
        output.write(bashCompletion());
        return good;
    }
    if (!commands.chosen()) {
        if (!output.json()) {
            std::fputs((app.help() + "\n").c_str(), stderr);
        }
        output.complain("no command is given; --help lists them");
        return wrongCommandLine;
    }
    return commands.chosen()(output);
}

} // namespace

int main(int argc, char** argv)
{
    const std::vector<std::string> arguments = utf8Arguments(argc, argv);
    Output output({given(arguments, "--json"), given(arguments, "--verbose")});
    try {
        CLI::App app("Looks at the suite on this computer: its configurations, data files and what else it needs.", "brv");
        Commands commands(app);
        bool json = false, verbose = false;
        std::string completionOf;
        app.require_subcommand(0, 1);
        app.add_flag("--json", json, "Answers with a JSON document, for programs");
        app.add_flag("--verbose", verbose, "Shows what the library prints meanwhile, on the error stream");
        app.add_option("--completion", completionOf, "Prints the completion script of that shell: bash")->type_name("SHELL");
        app.set_version_flag("--version", std::to_string(getMajorVersion()) + "." + std::to_string(getMinorVersion()));
        app.footer("COMMAND --help tells more of each. The exit code is 0 when all is good, 1 when something is wrong or was not\n"
                   "found, 2 when the command line was not understood.\n"
                   "Examples:\n  brv config list\n  brv doctor --json");
        for (const auto add : {addConfig, addVersion, addData, addDoctor}) {
            add(commands);
        }
        for (const auto add : {addIpc, addPorts, addJitter}) {
            add(commands);
        }
        commands.completes("SHELL", [] { return std::vector<std::string>{"bash"}; });
        if (arguments.size() > 2 && arguments[0] == "--complete" && arguments[1] == "--") {
            output.write(linesOf(completionsOf({arguments.begin() + 2, arguments.end()}, commands)));
            return good;
        }
        return run(app, commands, arguments, completionOf, output);
    } catch (const std::exception& fault) {
        output.complain(fault.what());
        return somethingIsWrong;
    }
}
