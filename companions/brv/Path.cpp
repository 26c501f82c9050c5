#include "brv/Path.h"

#include "brvUtils/os/FileSystem.h"

#include <algorithm>
#include <cctype>
#include <vector>

namespace os = brvUtils::os;

namespace brv {
namespace {

bool startsWithDrive(const std::string& path)
{
    return path.size() >= 2 && path[1] == ':' && std::isalpha(static_cast<unsigned char>(path[0])) != 0;
}

/// A path without redundant parts.
struct Parts
{
    std::string root; ///< "", "/", "C:", "C:/" or "//"
    std::size_t fixed = 0; ///< The first names that `..` cannot take along: server and share.
    std::vector<std::string> names;

    bool absolute() const { return !root.empty() && root.back() == '/'; }
};

Parts partsOf(const std::string& path)
{
    const std::string text = FixPathSeparators(path);
    Parts parts;
    std::size_t position = 0;
    if (text.size() > 2 && text[0] == '/' && text[1] == '/' && text[2] != '/') {
        parts.root = "//";
        parts.fixed = 2;
        position = 2;
    } else {
        if (startsWithDrive(text)) {
            parts.root = text.substr(0, 2);
            position = 2;
        }
        if (position < text.size() && text[position] == '/') {
            parts.root += '/';
        }
    }

    std::vector<std::string>& names = parts.names;
    while (position < text.size()) {
        const std::size_t end = std::min(text.find('/', position), text.size());
        std::string name = text.substr(position, end - position);
        position = end + 1;
        if (name.empty() || name == ".") {
            continue;
        }
        if (name != "..") {
            names.push_back(std::move(name));
        } else if (names.size() > parts.fixed && names.back() != "..") {
            names.pop_back();
        } else if (!parts.absolute()) {
            names.push_back(std::move(name));
        }
    }
    return parts;
}

std::string joined(const std::string& root, const std::vector<std::string>& names)
{
    std::string result = root;
    for (std::size_t i = 0; i < names.size(); ++i) {
        result += (i == 0 ? "" : "/") + names[i];
    }
    return result.empty() ? "." : result;
}

} // namespace

std::string NormalizePath(const std::string& path)
{
    if (path.empty()) {
        return path;
    }
    const Parts parts = partsOf(path);
    return joined(parts.root, parts.names);
}

std::string FixPathSeparators(const std::string& path)
{
    std::string text = path;
    std::replace(text.begin(), text.end(), '\\', '/');
    return text;
}

std::string RelativeFilename(const std::string& folder, const std::string& file)
{
    const Parts from = partsOf(folder);
    const Parts to = partsOf(file);
    const auto sameName = [](const std::string& a, const std::string& b) { return os::sameFileName(a, b); };
    const auto [up, down] = std::mismatch(from.names.begin(), from.names.end(), to.names.begin(), to.names.end(), sameName);
    // The names of drives know no case on any system. Nobody can tell what a `..` that is left over goes back on.
    const bool sameRoot = std::equal(from.root.begin(), from.root.end(), to.root.begin(), to.root.end(),
        [](unsigned char a, unsigned char b) { return std::toupper(a) == std::toupper(b); });
    const bool sameShare = static_cast<std::size_t>(up - from.names.begin()) >= from.fixed;
    if (!sameRoot || !sameShare || std::find(up, from.names.end(), "..") != from.names.end()) {
        return NormalizePath(file);
    }
    std::vector<std::string> names(static_cast<std::size_t>(from.names.end() - up), "..");
    names.insert(names.end(), down, to.names.end());
    return joined("", names);
}

std::string RestoreCase(const std::string& path)
{
    const std::string text = FixPathSeparators(path);
    std::size_t position = startsWithDrive(text) ? 2 : 0;
    if (partsOf(text).root == "//") {
        for (int skipped = 0; skipped < 2 && position < text.size(); ++skipped) {
            position = std::min(text.find('/', position == 0 ? 2 : position + 1), text.size());
        }
    }
    std::string result = text.substr(0, position);
    while (position < text.size()) {
        const std::size_t end = std::min(text.find('/', position), text.size());
        const std::string name = text.substr(position, end - position);
        result += name.empty() || name == "." || name == ".." ? name : os::spellingOnDisk(result + name);
        result += end < text.size() ? "/" : "";
        position = end + 1;
    }
    return result;
}

} // namespace brv
