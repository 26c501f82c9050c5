#include "ConfigChoice.h"

#include "Remedies.h"

#include <brvUtils/core/Errors.h>
#include <brvUtils/startup/EnvConfig.h>

#include <set>

namespace brvTool {

using namespace brvUtils;

void addListOption(CLI::App& command, ConfigChoice& choice)
{
    command.add_option("--list", choice.list, "The list of configurations, in place of STUDIO_PATH's configurations.cfg")->type_name("FILE");
}

void addConfigurationOption(CLI::App& command, ConfigChoice& choice)
{
    command.add_option("-c,--configuration", choice.configuration, "The configuration, in place of the one that modules take by default")
        ->type_name("CONFIGURATION");
}

ListReport declarations(const ConfigChoice& choice)
{
    ListReport report = reportConfigurations(choice.list);
    if (report.files.empty() || (choice.list.empty() && report.files.front().variable != "STUDIO_PATH")) {
        throw Fault("STUDIO_PATH is not defined, so that there is no list of configurations: " + defineVariable("STUDIO_PATH", "FOLDER")
            + ", or --list FILE");
    }
    if (!report.files.front().exists) {
        throw Fault("the list of configurations " + report.files.front().file + " does not exist; brv config doctor tells more");
    }
    return report;
}

std::vector<std::string> declaredNames(const ListReport& report)
{
    std::set<std::string> names;
    for (const EntryReport& each : report.declarations) {
        if (each.counts) {
            names.insert(each.name);
        }
    }
    return {names.begin(), names.end()};
}

std::string select(const ConfigChoice& choice)
{
    declarations(choice);
    try {
        if (!choice.list.empty()) {
            EnvConfig::setVeloraConfigFilePath(choice.list);
        }
        EnvConfig::setConfig(choice.configuration, false);
        return EnvConfig::getCurrentConfiguration();
    } catch (const ConfigurationError& fault) {
        throw Fault(std::string(fault.what()) + "; brv config doctor tells more");
    }
}

} // namespace brvTool
