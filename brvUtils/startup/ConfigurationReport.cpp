#include "brvUtils/startup/ConfigurationReport.h"

#include "brvUtils/core/FileSystem.h"
#include "brvUtils/os/Environment.h"
#include "brvUtils/startup/internal/Configurations.h"
#include "brvUtils/startup/internal/ListFiles.h"
#include "brvUtils/startup/internal/References.h"

#include <Utilities/System.h>

#include <map>

namespace brvUtils {

namespace {

using KnownVariables = std::map<std::string, std::string>;

PathReport pathReport(const std::string& generic, const KnownVariables& known)
{
    ResolvedText resolved = resolveReferences(generic, known);
    PathReport report;
    report.generic = generic;
    report.fault = faultText(resolved);
    report.path = report.fault.empty() ? resolved.text : generic;
    report.variables = std::move(resolved.variables);
    report.exists = report.fault.empty() && fileOrFolderExist(withoutEndSeparators(report.path), utf8);
    return report;
}

std::vector<PathReport> pathReports(const std::string& list, const KnownVariables& known)
{
    std::vector<PathReport> reports;
    for (std::size_t begin = 0, end = 0; end != std::string::npos; begin = end + 1) {
        end = list.find(';', begin);
        reports.push_back(pathReport(list.substr(begin, end - begin), known));
    }
    return reports;
}

std::string mainFile(const std::string& given)
{
    if (given.empty()) {
        const auto studio = os::environmentVariable("STUDIO_PATH");
        return !state().mainFile.empty() ? state().mainFile.get() : studio ? *studio + "/configurations.cfg" : std::string();
    }
    std::string file;
    Utilities::System::ExpandLocalEnvironmentVariables(given, file, Utilities::System::DaemonVariableMatchingPattern, {});
    return file;
}

ListFileReport overlayReport(const Overlay& overlay, bool mayBeRead)
{
    const bool isThere = overlay.isThere();
    return {isThere ? overlay.find() : *os::environmentVariable(overlay.variable) + "/configurations.cfg", overlay.variable, isThere,
        isThere && mayBeRead};
}

/// Takes away what the entry that was added last replaces.
void letLastCount(std::vector<EntryReport>& entries)
{
    for (auto entry = entries.begin(); entry + 1 != entries.end(); ++entry) {
        entry->counts = entry->counts && entry->name != entries.back().name;
    }
}

} // namespace

PathReport reportPath(const std::string& generic)
{
    return pathReport(generic, {});
}

ListReport reportConfigurations(const std::string& listFile)
{
    const Guard guard(EnvConfig::ourCS);
    ListReport report;
    report.computer = Configurations::askHostName();
    if (const std::string file = mainFile(listFile); !file.empty()) {
        const bool exists = fileExist(file, utf8);
        report.files.push_back({file, listFile.empty() && state().mainFile.empty() ? "STUDIO_PATH" : "", exists, exists});
    }
    bool mayBeRead = true;
    for (const Overlay& overlay : {computeOverlay(), localOverlay()}) {
        if (overlay.isUsed()) {
            report.files.push_back(overlayReport(overlay, mayBeRead));
            mayBeRead = mayBeRead && !report.files.back().isRead;
        }
    }
    for (const ListFileReport& file : report.files) {
        if (!file.isRead) {
            continue;
        }
        Utilities::ConfigFile list(file.file);
        forEachDeclaration(list, report.computer, [&](const std::string& section, const std::string& name, const std::string& value) {
            PathReport path = pathReport(value, {});
            path.path = withoutEndSeparators(path.path);
            const bool exists = path.exists;
            report.declarations.push_back({file.file, section, name, value, {std::move(path)}, exists});
            if (exists) {
                letLastCount(report.declarations);
            }
        });
    }
    return report;
}

ConfigurationReport reportConfiguration(const std::string& folder)
{
    ConfigurationReport report;
    report.folder = folder;
    report.hasProcessFile = fileExist(folder + "/Process.xfg", utf8);
    if (EnvConfig::getConfigVersion(folder, report.version)) {
        const std::string file = folder + "/version.cfg";
        report.versionFile = fileExist(file, utf8) ? file : folder + "/Process.cfg";
    }
    KnownVariables known;
    Utilities::ConfigFile variables(folder + "/envvar.cfg");
    for (const std::string& name : variables.getVariablesNames("Common")) {
        const std::string value = variables[name];
        PathReport path = pathReport(value, known);
        known[name] = path.path;
        report.variables.push_back({variables.getFileName(), "Common", name, value, {std::move(path)}, true});
    }
    Utilities::ConfigFile keywords(folder + "/datafile.cfg");
    report.hasDataFile = keywords.isLoaded();
    forEachDeclaration(keywords, Configurations::askHostName(), [&](const std::string& section, const std::string& name, const std::string& value) {
        report.keywords.push_back({keywords.getFileName(), section, name, value, pathReports(value, known), true});
        letLastCount(report.keywords);
    });
    return report;
}

} // namespace brvUtils
