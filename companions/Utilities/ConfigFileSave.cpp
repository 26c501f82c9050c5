#include "Utilities/ConfigFile.h"

#include "Utilities/internal/ConfigLines.h"
#include "brvUtils/os/FileSystem.h"

#include <algorithm>

namespace os = brvUtils::os;

namespace Utilities {

using internal::ConfigLines;

namespace {

/// Text to take the place of [begin, end) in another.
struct Edit
{
    std::size_t begin;
    std::size_t end;
    std::string text;
};

std::string withEdits(const std::string& text, std::vector<Edit> edits)
{
    // Those at one place stay in the order they were asked for.
    std::stable_sort(edits.begin(), edits.end(), [](const Edit& a, const Edit& b) { return a.begin < b.begin; });
    std::string result;
    std::size_t done = 0;
    for (const Edit& edit : edits) {
        result.append(text, done, edit.begin - done).append(edit.text);
        done = edit.end;
    }
    return result.append(text, done);
}

/// No line end may stand in either, so that one text names both.
std::string entryName(std::string_view section, std::string_view key)
{
    return std::string(section).append(1, '\n').append(key);
}

/// The path with `/` alone, and without parts that mean nothing: `.` and empty ones.
std::string plain(std::string path)
{
    std::replace(path.begin(), path.end(), '\\', '/');
    std::string result;
    for (std::size_t begin = 0, end = 0; end != path.npos; begin = end + 1) {
        end = path.find('/', begin);
        const std::string part = path.substr(begin, end - begin);
        if (part != "." && (!part.empty() || begin <= 1)) { // a root begins with one separator or two
            result += part + '/';
        }
    }
    return result;
}

bool sameName(const std::string& a, const std::string& b)
{
    return os::sameFileName(plain(a), plain(b));
}

} // namespace

/// `text` with the changes that are due, and otherwise as it is.
std::string ConfigFile::changed(const std::string& text) const
{
    // Of several changes of one entry the last one is due, and of several lines of one entry the last one counts.
    std::unordered_map<std::string, const Change*> due;
    for (const Change& change : changes_) {
        due[entryName(change.section, change.key)] = &change;
    }
    std::unordered_map<const Change*, Edit> replaced;
    std::unordered_map<std::string, std::size_t> sectionEnds;
    std::vector<Edit> edits;
    bool lastLineGoes = false;
    for (ConfigLines lines(text); lines.next();) {
        if (lines.kind() == ConfigLines::Kind::other) {
            continue;
        }
        sectionEnds[std::string(lines.section())] = lines.end();
        const bool isEntry = lines.kind() == ConfigLines::Kind::entry;
        const auto found = isEntry ? due.find(entryName(lines.section(), lines.key())) : due.end();
        if (found == due.end()) {
            continue;
        }
        if (const Change& change = *found->second; change.value) {
            const std::size_t begin = static_cast<std::size_t>(lines.value().data() - text.data());
            replaced[&change] = {begin, begin + lines.value().size(), *change.value};
        } else {
            edits.push_back({lines.begin(), lines.end(), {}});
            lastLineGoes = lines.end() == text.size();
        }
    }
    for (const auto& entry : replaced) {
        edits.push_back(entry.second);
    }

    const std::size_t firstEnd = text.find('\n');
    const std::string lineEnd = firstEnd != text.npos && firstEnd > 0 && text[firstEnd - 1] == '\r' ? "\r\n" : "\n";
    std::vector<std::string> newSections;
    std::unordered_map<std::string, std::string> newEntries;
    for (const Change& change : changes_) {
        if (!change.value || due[entryName(change.section, change.key)] != &change || replaced.count(&change) != 0) {
            continue;
        }
        const std::string line = change.key + " = " + *change.value;
        const auto end = sectionEnds.find(change.section);
        if (end != sectionEnds.end()) {
            const bool lineIsOpen = text[end->second - 1] != '\n' && !lastLineGoes; // the last one of the file, perhaps
            edits.push_back({end->second, end->second, lineIsOpen ? lineEnd + line : line + lineEnd});
        } else {
            std::string& entries = newEntries[change.section];
            if (entries.empty()) {
                newSections.push_back(change.section);
            }
            entries += line + lineEnd;
        }
    }

    std::string result = withEdits(text, std::move(edits));
    for (const std::string& section : newSections) {
        if (ConfigLines(result).next()) { // more than a byte-order mark
            result += result.back() != '\n' ? lineEnd + lineEnd : lineEnd;
        }
        result += '[' + section + ']' + lineEnd + newEntries[section];
    }
    return result;
}

bool ConfigFile::save(const std::string& path)
{
    if (path.empty()) {
        return false;
    }
    const os::FileLock lock(path);
    if (lock.error() != os::error::none) {
        return false;
    }
    const bool isOwn = sameName(path, fileName_);
    if (!isOwn && (loaded_ || !text_.empty())) {
        return os::replaceFile(path, changed(text_)) == os::error::none;
    }
    std::string now;
    const os::ErrorCode fault = os::readFile(path, now);
    if (fault != os::error::none && fault != os::error::fileNotFound) {
        return false;
    }
    std::string merged = changed(now);
    if (os::replaceFile(path, merged) != os::error::none) {
        return false;
    }
    if (isOwn) {
        text_ = std::move(merged);
        changes_.clear();
    }
    return true;
}

bool ConfigFile::createEmptyConfigFile(const std::string& path)
{
    if (path.empty()) {
        return false;
    }
    os::FileStatus status;
    const bool wasThere = os::fileStatus(path, status) == os::error::none;
    if (wasThere && (!status.isFile || !status.writable || status.size > 0)) {
        return status.isFile;
    }
    // Others may create it at this moment, and save; and an empty one may be theirs for as long as they lock it.
    const os::FileLock lock(path);
    if (lock.error() != os::error::none) {
        return wasThere;
    }
    const bool isThere = os::fileStatus(path, status) == os::error::none && status.size > 0;
    return isThere || os::replaceFile(path, {}) == os::error::none;
}

} // namespace Utilities
