#include "ConfigChoice.h"
#include "ConfigDoctor.h"

#include <algorithm>
#include <memory>

// Commands that show configurations.

namespace brvTool {

using namespace brvUtils;

namespace {

Cell yesNo(bool value)
{
    return {value, "", value ? Tone::plain : Tone::bad};
}

/// What keeps a configuration from being selected; empty when nothing does.
std::string obstacle(const EntryReport& declaration)
{
    const PathReport& path = declaration.paths.front();
    if (!path.fault.empty()) {
        return path.fault;
    }
    if (!path.exists) {
        return "the folder does not exist";
    }
    const ConfigurationReport report = reportConfiguration(path.path);
    return !report.hasProcessFile ? "no Process.xfg" : !report.hasDataFile ? "no datafile.cfg" : "";
}

std::string versionOf(const PathReport& path)
{
    return path.exists ? reportConfiguration(path.path).version.toString() : "?";
}

std::string defaultOf(const ConfigChoice& choice)
{
    try {
        return select({choice.list, ""});
    } catch (const Fault&) {
        return {};
    }
}

Table listsOf(const ListReport& report)
{
    Table table{"lists", {{"file", "LIST"}, {"variable", "BY"}, {"exists", "EXISTS"}, {"read", "READ"}}, {}, "", ""};
    for (const ListFileReport& each : report.files) {
        table.rows.push_back({each.file, {orNull(each.variable), each.variable.empty() ? "--list" : ""}, yesNo(each.exists), each.isRead});
    }
    return table;
}

int list(const ConfigChoice& choice, Output& output)
{
    const ListReport report = declarations(choice);
    const std::string chosen = defaultOf(choice);
    Table table{"configurations", {{"name", "NAME"}, {"version", "VERSION"}, {"state", "STATE"}, {"section", "SECTION"}, {"file", "LIST"}, {"folder", "FOLDER"}}, {},
        "no configurations are declared", ""};
    for (const EntryReport& each : report.declarations) {
        const bool replaced = !each.counts && each.paths.front().exists;
        const std::string fault = replaced ? "" : obstacle(each);
        const bool isDefault = each.counts && each.name == chosen;
        const std::string state = replaced ? "replaced" : !fault.empty() ? fault : isDefault ? "default" : "ok";
        table.rows.push_back({each.name, versionOf(each.paths.front()), {state, "", fault.empty() ? Tone::plain : Tone::bad}, each.section, each.file,
            each.paths.front().path});
    }
    const bool any = !declaredNames(report).empty();
    output.show({std::move(table), listsOf(report), Fields{"", {{{"default", "Default"}, orNull(chosen)}, {{"computer", "Computer"}, report.computer}}, ""}});
    return any ? good : somethingIsWrong;
}

Table filesOf(const std::string& folder)
{
    Table table{"files", {{"file", "FILE"}, {"exists", "EXISTS"}}, {}, "", ""};
    for (const std::string name : {"Process.xfg", "datafile.cfg", "envvar.cfg", "version.cfg", "shm.cfg"}) {
        table.rows.push_back({name, reportPath(folder + "/" + name).exists});
    }
    return table;
}

Cell stateOf(const PathReport& path)
{
    return path.fault.empty() ? Cell(path.exists ? "exists" : "missing", "", path.exists ? Tone::plain : Tone::bad) : Cell(path.fault, "", Tone::bad);
}

Table variablesOf(const ConfigurationReport& report)
{
    Table table{"variables", {{"name", "VARIABLE"}, {"value", "VALUE"}, {"generic", "IN envvar.cfg"}}, {}, "no variables are exported", ""};
    for (const EntryReport& each : report.variables) {
        const PathReport& path = each.paths.front();
        table.rows.push_back({each.name, path.fault.empty() ? Cell(path.path) : Cell(Json(), path.fault, Tone::bad), each.value});
    }
    return table;
}

Table keywordsOf(const ConfigurationReport& report)
{
    Table table{"keywords", {{"keyword", "KEYWORD"}, {"path", "FOLDER"}, {"state", "STATE"}, {"section", "SECTION"}, {"generic", "IN datafile.cfg"}}, {},
        "datafile.cfg has no keywords", ""};
    for (const EntryReport& each : report.keywords) {
        for (const PathReport& path : each.paths) {
            if (each.counts) {
                table.rows.push_back({each.name, path.path, stateOf(path), each.section, path.generic});
            }
        }
    }
    return table;
}

int show(const ConfigChoice& choice, Output& output)
{
    const ListReport list = declarations(choice);
    const std::string name = choice.configuration.empty() ? defaultOf(choice) : choice.configuration;
    Table declared{"declarations", {{"file", "DECLARED IN"}, {"section", "SECTION"}, {"value", "AS"}, {"folder", "FOLDER"}, {"counts", "COUNTS"}}, {}, "", ""};
    std::string folder;
    for (const EntryReport& each : list.declarations) {
        if (each.name == name) {
            declared.rows.push_back({each.file, each.section, each.value, each.paths.front().path, each.counts});
            folder = each.counts || folder.empty() ? each.paths.front().path : folder;
        }
    }
    if (declared.rows.empty()) {
        throw Fault(name.empty() ? "no configuration can be selected; brv config doctor tells why"
                                 : "there is no configuration \"" + name + "\"; brv config list shows those that there are");
    }
    const ConfigurationReport report = reportConfiguration(folder);
    Fields fields{"", {{{"name", "Configuration"}, name}, {{"folder", "Folder"}, folder}, {{"version", "Version"}, report.version.toString()},
                           {{"version_file", "by"}, orNull(report.versionFile)}}, ""};
    output.show({std::move(fields), std::move(declared), filesOf(folder), variablesOf(report), keywordsOf(report)});
    return good;
}

int explain(const ConfigChoice& choice, const std::string& keyword, Output& output)
{
    select(choice);
    const KeywordReport report = reportKeyword(keyword);
    const bool found = !report.section.empty();
    Fields fields{"", {{{"keyword", "Keyword"}, keyword}, {{"configuration", "Configuration"}, report.configuration}, {{"file", "File"}, report.file},
                           {{"section", "Section"}, orNull(report.section)},
                           {{"entry", "Entry"}, {orNull(report.entry), found ? report.entry + " = " + report.value : "none for it, nor for what it begins with"}},
                           {{"rest", "Then"}, orNull(report.rest)}, {{"first", "First folder"}, orNull(report.first)}}, ""};
    Table folders{"folders", {{"path", "FOLDER"}, {"state", "STATE"}, {"generic", "AS"}, {"variables", "BY"}}, {}, "", ""};
    for (const PathReport& each : report.folders) {
        Json variables = Json::object();
        std::string text;
        for (const auto& [name, value] : each.variables) {
            variables[name] = value;
            text += (text.empty() ? "" : ", ") + name + "=" + value;
        }
        folders.rows.push_back({each.path, stateOf(each), each.generic, {std::move(variables), text.empty() ? "-" : text}});
    }
    output.show({std::move(fields), std::move(folders)});
    return found ? good : somethingIsWrong;
}

} // namespace

void addConfig(Commands& commands)
{
    const auto choice = std::make_shared<ConfigChoice>();
    const auto keyword = std::make_shared<std::string>();
    CLI::App& group = commands.addGroup({"config", "Shows what configurations there are and how modules find their files", {"brv config list", "brv config doctor"}});
    CLI::App& lister = commands.add(group, {"list", "Shows the configurations that are declared, and by which list", {"brv config list", "brv config list --list bench/configurations.cfg"}},
        [choice](Output& output) { return list(*choice, output); });
    CLI::App& shower = commands.add(group, {"show", "Shows a configuration with its files, variables and folders", {"brv config show", "brv config show DEFAULT_1.6_Urban --json"},
                                              "Without a name it is the one that modules take by default."},
        [choice](Output& output) { return show(*choice, output); });
    shower.add_option("NAME", choice->configuration, "Name of the configuration")->type_name("CONFIGURATION");
    CLI::App& explainer = commands.add(group, {"explain", "Shows how a keyword gets its folders", {"brv config explain data/cycles", "brv config explain data -c ExtraUrban"}},
        [choice, keyword](Output& output) { return explain(*choice, *keyword, output); });
    explainer.add_option("KEYWORD", *keyword, "Such as DATA/vehicles")->required()->type_name("KEYWORD");
    addConfigurationOption(explainer, *choice);
    CLI::App& doctor = commands.add(group, {"doctor", "Looks for what is wrong with the configurations, and says what mends it", {"brv config doctor", "brv config doctor -c ExtraUrban"},
                                              "Looks at all configurations unless one is named."},
        [choice](Output& output) {
            const Findings findings = examineConfigurations(*choice);
            output.show(answerOf(findings));
            return exitCodeOf(findings);
        });
    addConfigurationOption(doctor, *choice);
    for (CLI::App* const command : {&lister, &shower, &explainer, &doctor}) {
        addListOption(*command, *choice);
    }
    commands.completes("CONFIGURATION", [choice] { return declaredNames(reportConfigurations(choice->list)); });
    commands.completes("KEYWORD", [choice] {
        std::vector<std::string> names;
        select(*choice);
        for (const EntryReport& each : reportConfiguration(EnvConfig::getConfigPath()).keywords) {
            names.push_back(each.name);
        }
        return names;
    });
}

} // namespace brvTool
