#include "brvUtils/core/FileNames.h"

#include "brvUtils/os/Calendar.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace brvUtils {
namespace {

constexpr const char* separators = "/\\";

template <typename Text>
Text extensionOf(const Text& path, typename Text::value_type dot)
{
    const std::size_t position = path.rfind(dot);
    return position == Text::npos ? Text() : path.substr(position);
}

} // namespace

std::string fileName(const std::string& path)
{
    return path.substr(path.find_last_of(separators) + 1); // npos + 1 is the start
}

std::string getPath(const std::string& path)
{
    const std::size_t separator = path.find_last_of(separators);
    return separator == std::string::npos ? std::string() : path.substr(0, separator);
}

void removePath(std::string& path)
{
    path = fileName(path);
}

void removePath(char* path)
{
    const std::string name = fileName(path);
    std::memcpy(path, name.c_str(), name.size() + 1);
}

void removeExtension(std::string& path)
{
    const std::size_t last = path.find_last_of("./\\");
    if (last != std::string::npos && path[last] == '.') {
        path.erase(last);
    }
}

void removeExtension(char* path)
{
    std::string text = path;
    removeExtension(text);
    path[text.size()] = '\0';
}

void getExtension(const std::string& path, std::string& extension)
{
    extension = extensionOf(path, '.');
}

void getExtension(const std::wstring& path, std::wstring& extension)
{
    extension = extensionOf(path, L'.');
}

void getExtension(const char* path, char* extension)
{
    const std::string text = extensionOf(std::string(path), '.');
    std::memcpy(extension, text.c_str(), text.size() + 1);
}

std::string basename(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    if (slash != std::string::npos) {
        return path.substr(slash + 1);
    }
    std::string result = path;
    std::replace(result.begin(), result.end(), '\\', '/');
    return result;
}

std::string windowsStylePath(const std::string& path)
{
    std::string result = path;
    std::replace(result.begin(), result.end(), '/', '\\');
    return result;
}

void buildFileName(const char* a, const char* b, const char* c, const char* d, char* out)
{
    std::sprintf(out, "%s%s%c%s%s", b, c, '\\', a, d);
}

std::string buildRecordBaseName(const std::string& name, std::int64_t time)
{
    std::tm date {};
    if (!os::utcCalendar(time, date)) {
        std::perror("buildRecordBaseName");
    }
    std::string result = name;
    std::replace_if(result.begin(), result.end(), [](char c) { return c == '/' || c == '\\'; }, '_');
    char text[64];
    std::snprintf(text, sizeof text, "-%02d_%02d_%04d-%02dh%02dm%02ds", date.tm_mday, date.tm_mon + 1, date.tm_year + 1900,
        date.tm_hour, date.tm_min, date.tm_sec);
    return result + text;
}

} // namespace brvUtils
