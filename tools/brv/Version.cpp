#include "Command.h"

#include <brvUtils/platform/RFileVersionInfo.h>

#include <memory>

// The command that shows the version information of programs and libraries.

namespace brvTool {

namespace {

int showVersions(const std::vector<std::string>& files, Output& output)
{
    Answer answer;
    Json document = Json::array();
    int code = good;
    for (const std::string& file : files) {
        Json object{{"file", file}};
        Fields fields{"", {}, file};
        try {
            for (const auto& [name, text] : brvUtils::RFileVersionInfo(file).key()) {
                object[name] = text;
                if (!text.empty()) {
                    fields.values.push_back({{name, "  " + name}, text});
                }
            }
            object["error"] = nullptr;
        } catch (const std::exception& fault) {
            object["error"] = fault.what();
            fields.values.push_back({{"error", "  error"}, {fault.what(), "", Tone::bad}});
            code = somethingIsWrong;
        }
        document.push_back(std::move(object));
        if (!output.json()) {
            answer.push_back(std::move(fields));
        }
    }
    answer.push_back(Lines{"files", "", std::move(document)});
    output.show(answer);
    return code;
}

} // namespace

void addVersion(Commands& commands)
{
    const auto files = std::make_shared<std::vector<std::string>>();
    CLI::App& command = commands.add(commands.top(), {"version", "Shows the version information that programs and libraries carry", {"brv version vehicle.exe", "brv version *.dll --json"}},
        [files](Output& output) { return showVersions(*files, output); });
    command.add_option("FILE", *files, "Programs and libraries")->required()->type_name("FILE");
}

} // namespace brvTool
