#include "brvUtils/startup/EnvConfig.h"

#include "brvUtils/core/FileSystem.h"
#include "brvUtils/os/Environment.h"
#include "brvUtils/startup/GenericPath.h"
#include "brvUtils/startup/internal/Configurations.h"
#include "brvUtils/startup/internal/References.h"

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

void explainFolder(std::ostream& out, const std::string& folder)
{
    out << "  folder   " << folder << '\n';
    const ResolvedText resolved = resolveReferences(folder);
    for (const auto& [name, value] : resolved.variables) {
        out << "    " << name << " = " << value << '\n';
    }
    switch (resolved.fault) {
    case ResolvedText::Fault::none:
        out << "    gives  " << resolved.text << (exists(resolved.text) ? "" : "  (does not exist)") << '\n';
        break;
    case ResolvedText::Fault::noEnd: out << "    stays as it is: a \"${\" has no \"}\"\n"; break;
    case ResolvedText::Fault::undefined: out << "    stays as it is: there is no variable " << resolved.name << '\n'; break;
    case ResolvedText::Fault::endless: out << "    stays as it is: " << resolved.name << " leads back to itself, or to too much text\n"; break;
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

std::string EnvConfig::explain(const std::string& keyword)
{
    const Guard guard(ourCS);
    std::ostringstream out;
    out << keyword << '\n';
    if (state().current.empty()) {
        out << "  no configuration is selected\n";
        return out.str();
    }
    const Utilities::ConfigFile& file = state().dataFile;
    out << "  file     " << file.getFileName() << "  (configuration " << state().current.get() << ")\n";
    Entry entry = findEntry(keyword);
    if (entry.value.empty()) {
        entry = {keyword, state().dataFile[keyword], {}}; // where all folders are asked for, the text as it stands counts too
    }
    if (entry.value.empty()) {
        out << "  no entry for it, nor for what it begins with\n";
        return out.str();
    }
    std::string value;
    out << "  section  " << (file.readString(entry.key, value) ? file.getSection() : "Common") << '\n'
        << "  entry    " << entry.key << " = " << entry.value << '\n';
    if (!entry.rest.empty()) {
        out << "  then     " << entry.rest << '\n';
    }
    for (const std::string& folder : foldersOf(entry)) {
        explainFolder(out, folder);
    }
    if (firstFolder(entry.value).empty()) {
        out << "  first    " << getFirstPath(keyword) << "  (by a shorter entry, since the first folder is empty)\n";
    }
    return out.str();
}

} // namespace brvUtils
