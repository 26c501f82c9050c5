#include "ConfigDoctor.h"

#include "FileLines.h"
#include "Remedies.h"

#include <StudioVersion/Version.h>

#include <algorithm>

namespace brvTool {

using namespace brvUtils;

namespace {

/// The variable that a path fails by; empty when it fails by something else.
std::string undefinedVariable(const PathReport& path)
{
    const std::string start = "there is no variable ";
    return path.fault.compare(0, start.size(), start) == 0 ? path.fault.substr(start.size()) : std::string();
}

std::string remedyFor(const PathReport& path, const std::string& file, const std::string& section, const std::string& name)
{
    const std::string variable = undefinedVariable(path);
    return variable.empty() ? editEntry(file, section, name, "FOLDER") : defineVariable(variable, "FOLDER");
}

void examineLists(Findings& findings, const ListReport& report)
{
    bool isMain = true;
    for (const ListFileReport& each : report.files) {
        const std::string by = each.variable.empty() ? "" : ", which " + each.variable + " names,";
        if (!each.exists) {
            findings.push_back({isMain ? Verdict::problem : Verdict::warning, "list", each.file + by + " does not exist",
                isMain ? writeLine("[Common]", each.file) : makeFile(each.file) });
        } else if (!each.isRead) {
            findings.push_back({Verdict::warning, "list", each.file + by + " is passed over, since COMPUTE_PATH names another one", ""});
        } else {
            findings.push_back({Verdict::ok, "list", each.file + by + " is read", ""});
            examineLines(findings, "list", each.file);
        }
        isMain = false;
    }
}

/// Whether the configuration's folder is there.
bool examineDeclaration(Findings& findings, const EntryReport& declaration)
{
    const PathReport& path = declaration.paths.front();
    const std::string where = FileLines(declaration.file).placeOf(declaration.section, declaration.name);
    if (!path.fault.empty()) {
        findings.push_back({Verdict::problem, declaration.name, "its folder " + path.generic + " is not found: " + path.fault,
            remedyFor(path, declaration.file, declaration.section, declaration.name), where});
    } else if (!path.exists) {
        findings.push_back({Verdict::problem, declaration.name, "its folder " + path.path + " does not exist", makeFolder(path.path), where});
    }
    return path.exists;
}

void examineVersion(Findings& findings, const std::string& name, const ConfigurationReport& report)
{
    if (report.version.toString() == "?") {
        const std::string suite = EnvConfig::Version(getMajorVersion(), getMinorVersion()).toString();
        findings.push_back({Verdict::warning, name, report.versionFile.empty() ? "its version is not known" : "its version is not known: " + report.versionFile + " begins with no number such as " + suite,
            writeLine(suite, report.folder + "/version.cfg")});
    }
}

void examineVariables(Findings& findings, const std::string& name, const ConfigurationReport& report)
{
    for (const EntryReport& each : report.variables) {
        const PathReport& path = each.paths.front();
        if (!path.fault.empty()) {
            findings.push_back({Verdict::problem, name, "the variable " + each.name + " stays " + path.generic + ": " + path.fault,
                remedyFor(path, each.file, "Common", each.name), FileLines(each.file).placeOf("Common", each.name)});
        }
    }
    const FileLines lines(report.folder + "/envvar.cfg");
    for (const std::string& section : lines.sections()) {
        if (section != "Common") {
            findings.push_back({Verdict::warning, name, "the section [" + section + "] is passed over: variables are those of [Common]", "", lines.path()});
        }
    }
}

void examineKeyword(Findings& findings, const std::string& name, const EntryReport& entry)
{
    const std::string where = FileLines(entry.file).placeOf(entry.section, entry.name);
    if (entry.name.find_first_of("/\\") != std::string::npos) {
        std::string joined = entry.name;
        joined.erase(std::remove_if(joined.begin(), joined.end(), [](char each) { return each == '/' || each == '\\'; }), joined.end());
        findings.push_back({Verdict::warning, name, "the keyword " + entry.name + " has a separator, by which no file is found",
            editEntry(entry.file, entry.section, joined, entry.value), where});
    }
    const bool any = std::any_of(entry.paths.begin(), entry.paths.end(), [](const PathReport& path) { return path.exists; });
    for (const PathReport& path : entry.paths) {
        const Verdict verdict = any ? Verdict::warning : Verdict::problem;
        if (!path.fault.empty()) {
            findings.push_back({verdict, name, "the keyword " + entry.name + " names " + path.generic + ", but " + path.fault,
                remedyFor(path, entry.file, entry.section, entry.name), where});
        } else if (!path.exists && !path.path.empty()) {
            findings.push_back({verdict, name, "the keyword " + entry.name + " names " + path.path + ", which does not exist", makeFolder(path.path), where});
        }
    }
}

void examineConfiguration(Findings& findings, const std::string& name, const std::string& folder)
{
    const std::size_t before = findings.size();
    const ConfigurationReport report = reportConfiguration(folder);
    for (const auto& [there, file] : {std::make_pair(report.hasProcessFile, "/Process.xfg"), std::make_pair(report.hasDataFile, "/datafile.cfg")}) {
        if (!there) {
            findings.push_back({Verdict::problem, name, "cannot be selected: " + folder + file + " is missing or cannot be read", makeFile(folder + file)});
        }
    }
    examineVersion(findings, name, report);
    examineVariables(findings, name, report);
    for (const EntryReport& each : report.keywords) {
        if (each.counts) {
            examineKeyword(findings, name, each);
        }
    }
    for (const char* const file : {"/datafile.cfg", "/envvar.cfg", "/shm.cfg"}) {
        examineLines(findings, name, folder + file);
    }
    examineSegments(findings, name, folder + "/shm.cfg");
    if (findings.size() == before) {
        findings.push_back({Verdict::ok, name, folder + " is in order", ""});
    }
}

} // namespace

void examineLines(Findings& findings, const std::string& subject, const std::string& file)
{
    const FileLines lines(file);
    for (const FileLine& line : lines.ignored()) {
        findings.push_back({Verdict::warning, subject, "the line \"" + line.text + "\" is ignored: it is no entry NAME = VALUE", "mend or remove the line", lines.place(line)});
    }
    for (const FileLine& line : lines.repeated()) {
        findings.push_back({Verdict::warning, subject, line.name + " stands in [" + line.section + "] again below, and that counts", "remove one of the lines", lines.place(line)});
    }
}

Findings examineConfigurations(const ConfigChoice& choice)
{
    Findings findings;
    const ListReport report = reportConfigurations(choice.list);
    if (report.files.empty() || (choice.list.empty() && report.files.front().variable != "STUDIO_PATH")) {
        findings.push_back({Verdict::problem, "list", "STUDIO_PATH is not defined, so that there is no list of configurations", defineVariable("STUDIO_PATH", "FOLDER")});
        return findings;
    }
    examineLists(findings, report);
    bool any = false, found = choice.configuration.empty();
    for (const EntryReport& each : report.declarations) {
        any = any || each.counts;
        if (!choice.configuration.empty() && each.name != choice.configuration) {
            continue;
        }
        found = true;
        if (examineDeclaration(findings, each) && each.counts) {
            examineConfiguration(findings, each.name, each.paths.front().path);
        }
    }
    if (!found) {
        throw Fault("there is no configuration \"" + choice.configuration + "\"; brv config list shows those that there are");
    }
    if (!any && report.files.front().exists) {
        findings.push_back({Verdict::problem, "list", "no configuration whose folder exists is declared", editEntry(report.files.front().file, "Common", "NAME", "FOLDER")});
    }
    return findings;
}

} // namespace brvTool
