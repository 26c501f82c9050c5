#include "brv/Path.h"

#include <algorithm>
#include <cctype>
#include <vector>

namespace brv {
namespace {

bool startsWithDrive(const std::string& path)
{
    return path.size() >= 2 && path[1] == ':' && std::isalpha(static_cast<unsigned char>(path[0])) != 0;
}

} // namespace

std::string NormalizePath(const std::string& path)
{
    if (path.empty()) {
        return path;
    }
    std::string text = path;
    std::replace(text.begin(), text.end(), '\\', '/');

    std::string root;
    std::size_t position = 0;
    std::size_t fixedParts = 0; // those that `..` cannot take along
    if (text.size() > 2 && text[0] == '/' && text[1] == '/' && text[2] != '/') {
        root = "//";
        position = 2;
        fixedParts = 2; // server and share
    } else {
        if (startsWithDrive(text)) {
            root = text.substr(0, 2);
            position = 2;
        }
        if (position < text.size() && text[position] == '/') {
            root += '/';
        }
    }
    const bool absolute = !root.empty() && root.back() == '/';

    std::vector<std::string> parts;
    while (position < text.size()) {
        const std::size_t end = std::min(text.find('/', position), text.size());
        std::string part = text.substr(position, end - position);
        position = end + 1;
        if (part.empty() || part == ".") {
            continue;
        }
        if (part != "..") {
            parts.push_back(std::move(part));
        } else if (parts.size() > fixedParts && parts.back() != "..") {
            parts.pop_back();
        } else if (!absolute) {
            parts.push_back(std::move(part));
        }
    }

    std::string result = root;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        result += (i == 0 ? "" : "/") + parts[i];
    }
    return result.empty() ? "." : result;
}

} // namespace brv
