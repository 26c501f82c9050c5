#include "brvUtils/startup/EnvConfig.h"

#include "brvUtils/core/FileSystem.h"
#include "brvUtils/os/Environment.h"
#include "brvUtils/startup/ConfigurationReport.h"
#include "brvUtils/startup/GenericPath.h"
#include "brvUtils/startup/internal/Configurations.h"

#include <brv/Path.h>

#include <iostream>
#include <sstream>

// Keywords: from a text of parts to the folders that "datafile.cfg" gives it.

namespace brvUtils {

namespace {

std::vector<std::string> split(const std::string& text, const char* separators)
{
    std::vector<std::string> pieces;
    std::size_t begin = 0;
    for (std::size_t end; (end = text.find_first_of(separators, begin)) != std::string::npos; begin = end + 1) {
        pieces.push_back(text.substr(begin, end - begin));
    }
    pieces.push_back(text.substr(begin));
    return pieces;
}

std::vector<std::string> folders(const std::string& value)
{
    return split(value, ";");
}

std::string firstFolder(const std::string& value)
{
    return value.substr(0, value.find(';'));
}

std::string join(const std::vector<std::string>& pieces, const char* separator)
{
    std::string text;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        text += (i > 0 ? separator : "") + pieces[i];
    }
    return text;
}

struct Entry
{
    std::string key;
    std::string value; ///< Empty: there is none.
    std::string rest; ///< Of the keyword, each part behind a "/".
};

/// The entry with the longest key that the keyword's first parts make and whose value will do.
template <typename Predicate>
Entry findEntry(const std::string& keyword, Predicate willDo)
{
    const std::vector<std::string> parts = split(keyword, "/\\");
    Entry entry{join(parts, ""), {}, {}};
    for (auto part = parts.rbegin(); part != parts.rend(); ++part) {
        entry.value = state().dataFile[entry.key];
        if (willDo(entry.value)) {
            return entry;
        }
        entry.key.resize(entry.key.size() - part->size());
        entry.rest = "/" + *part + entry.rest;
    }
    return {};
}

Entry findEntry(const std::string& keyword)
{
    return findEntry(keyword, [](const std::string& value) { return !value.empty(); });
}

std::vector<std::string> foldersOf(const Entry& entry)
{
    if (entry.value.empty()) {
        return {};
    }
    std::vector<std::string> result = folders(entry.value);
    for (std::string& folder : result) {
        folder += entry.rest;
    }
    return result;
}

/// Unresolved; empty for an unknown keyword.
std::string firstFolderOf(const std::string& keyword)
{
    const Entry entry = findEntry(keyword, [](const std::string& value) { return !firstFolder(value).empty(); });
    return entry.value.empty() ? std::string() : firstFolder(entry.value) + entry.rest;
}

bool exists(const std::string& path)
{
    return fileOrFolderExist(withoutEndSeparators(path), utf8);
}

/// The spelling on the disk, where it is asked for.
std::string withRepairedCase(const std::string& path)
{
    static const bool wanted = os::environmentVariable("BRV_FIXCASE").has_value();
    if (!wanted) {
        return path;
    }
    const std::string source = brv::FixPathSeparators(path);
    const std::string repaired = brv::RestoreCase(path);
    if (repaired != source) {
        std::cout << "FIXCASE problem here: \nFIXCASE src: " << source << "\nFIXCASE dst: " << repaired << std::endl;
    }
    return repaired;
}

void explainFolder(std::ostream& out, const PathReport& folder)
{
    out << "  folder   " << folder.generic << '\n';
    for (const auto& [name, value] : folder.variables) {
        out << "    " << name << " = " << value << '\n';
    }
    if (!folder.fault.empty()) {
        out << "    stays as it is: " << folder.fault << '\n';
    } else {
        out << "    gives  " << folder.path << (folder.exists ? "" : "  (does not exist)") << '\n';
    }
}

} // namespace

std::string EnvConfig::operator[](const std::string& keyword)
{
    const std::string path = getFirstPath(keyword);
    if (path.empty()) {
        std::cerr << "Fatal error : Empty keyword= " << keyword << std::endl;
    }
    return path;
}

std::string EnvConfig::getFirstPath(const std::string& keyword)
{
    const Guard guard(ourCS);
    return resolveGenericPath(firstFolderOf(keyword));
}

std::string EnvConfig::getFullPath(const std::string& keyword)
{
    const Guard guard(ourCS);
    return join(foldersOf(findEntry(keyword)), ";");
}

std::vector<std::string> EnvConfig::getSeparatedPath(const std::string& keyword)
{
    const Guard guard(ourCS);
    std::string path = getFullPath(keyword);
    if (path.empty()) {
        path = state().dataFile[keyword];
    }
    std::vector<std::string> result = folders(path);
    for (std::string& folder : result) {
        folder = resolveGenericPath(folder);
    }
    return result;
}

std::vector<std::string> EnvConfig::getSeparatedPathForConfiguration(const std::string& configuration, const std::string& keyword)
{
    const Guard guard(ourCS);
    const std::string current = getCurrentConfiguration();
    setConfig(configuration, false);
    std::vector<std::string> result = getSeparatedPath(keyword);
    setConfig(current, false);
    return result;
}

void EnvConfig::setSeparatedPath(const std::string& keyword, std::vector<std::string>& newFolders, bool save)
{
    const std::string key = join(split(keyword, "/\\"), "");
    const std::string value = join(newFolders, ";");
    const Guard guard(ourCS);
    Utilities::ConfigFile& file = state().dataFile;
    if (!save) {
        file.setEntry(key, "Common", value);
        return;
    }
    const std::string name = file.getFileName();
    file.setSection("Common");
    if (file.modifyEntry(key, value)) {
        file.load(name);
    } else {
        reportUnsaved(name);
    }
}

std::string EnvConfig::getRelativePath(const std::string& keyword, const std::string& file)
{
    std::string shortest;
    bool first = true;
    for (const std::string& folder : getSeparatedPath(keyword)) {
        const std::string relative = brv::RelativeFilename(folder, file);
        if (first || relative.size() < shortest.size()) {
            shortest = relative;
            first = false;
        }
    }
    return shortest;
}

std::string EnvConfig::findInPath(const std::string& keyword, const std::string& file)
{
    std::vector<std::string> candidates;
    {
        const Guard guard(ourCS);
        if (state().declared.empty()) {
            return {};
        }
        candidates = foldersOf(findEntry(keyword));
    }
    for (const std::string& candidate : candidates) {
        const std::string path = resolveGenericPath(file.empty() ? candidate : candidate + "/" + file);
        if (exists(path)) {
            return withRepairedCase(path);
        }
    }
    return {};
}

KeywordReport reportKeyword(const std::string& keyword)
{
    const Guard guard(EnvConfig::ourCS);
    const Utilities::ConfigFile& file = state().dataFile;
    KeywordReport report;
    report.keyword = keyword;
    report.configuration = state().current.get();
    if (report.configuration.empty()) {
        return report;
    }
    report.file = file.getFileName();
    Entry entry = findEntry(keyword);
    if (entry.value.empty()) {
        entry = {keyword, file[keyword], {}}; // where all folders are asked for, the text as it stands counts too
    }
    if (entry.value.empty()) {
        return report;
    }
    std::string value;
    report.section = file.readString(entry.key, value) ? file.getSection() : "Common";
    report.entry = entry.key;
    report.value = entry.value;
    report.rest = entry.rest;
    for (const std::string& folder : foldersOf(entry)) {
        report.folders.push_back(reportPath(folder));
    }
    report.first = EnvConfig::getFirstPath(keyword);
    return report;
}

std::string EnvConfig::explain(const std::string& keyword)
{
    const KeywordReport report = reportKeyword(keyword);
    std::ostringstream out;
    out << keyword << '\n';
    if (report.configuration.empty()) {
        out << "  no configuration is selected\n";
        return out.str();
    }
    out << "  file     " << report.file << "  (configuration " << report.configuration << ")\n";
    if (report.value.empty()) {
        out << "  no entry for it, nor for what it begins with\n";
        return out.str();
    }
    out << "  section  " << report.section << '\n' << "  entry    " << report.entry << " = " << report.value << '\n';
    if (!report.rest.empty()) {
        out << "  then     " << report.rest << '\n';
    }
    for (const PathReport& folder : report.folders) {
        explainFolder(out, folder);
    }
    if (firstFolder(report.value).empty()) {
        out << "  first    " << report.first << "  (by a shorter entry, since the first folder is empty)\n";
    }
    return out.str();
}

} // namespace brvUtils
