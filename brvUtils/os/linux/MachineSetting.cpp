#include "brvUtils/os/MachineSetting.h"

#include "brvUtils/os/Environment.h"
#include "brvUtils/os/FileSystem.h"
#include "brvUtils/os/linux/Descriptor.h"
#include "brvUtils/os/linux/Errno.h"
#include "brvUtils/os/linux/NativePath.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <string_view>
#include <sys/file.h>

// A file per key, with a line `name=text` per name, in which bytes of special meaning are written as `%` and two digits.

namespace brvUtils::os {
namespace {

constexpr std::size_t longestText = 255;

constexpr char digits[] = "0123456789ABCDEF";

/// Writes the bytes of `special`, `%` and those that are no letters as `%3D`.
std::string encoded(const std::string& text, std::string_view special)
{
    std::string result;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte <= ' ' || byte == 0x7F || c == '%' || special.find(c) != special.npos) {
            result += { '%', digits[byte >> 4], digits[byte & 15] };
        } else {
            result += c;
        }
    }
    return result;
}

/// A `%` that no two digits follow stands for itself.
std::string decoded(std::string_view text)
{
    const std::string_view known(digits);
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::size_t high = text[i] == '%' && i + 2 < text.size() ? known.find(text[i + 1]) : known.npos;
        const std::size_t low = high != known.npos ? known.find(text[i + 2]) : known.npos;
        if (low != known.npos) {
            result += static_cast<char>(high << 4 | low);
            i += 2;
        } else {
            result += text[i];
        }
    }
    return result;
}

std::string folder()
{
    const std::string chosen = environmentVariable("STUDIO_SETTINGS_DIR").value_or("");
    return nativePath(chosen.empty() ? "/var/lib/brvUtils" : chosen);
}

/// One name in the folder, whatever the key is.
std::string fileOf(const std::string& subKey)
{
    return folder() + "/" + encoded(subKey.c_str(), "/\\") + ".setting";
}

/// The text of a line of the file.
std::optional<std::string> find(std::string_view contents, const std::string& name)
{
    const std::string start = encoded(name, "=") + "=";
    while (!contents.empty()) {
        const std::string_view line = contents.substr(0, contents.find('\n'));
        if (line.substr(0, start.size()) == start) {
            return decoded(line.substr(start.size()));
        }
        contents.remove_prefix(std::min(line.size() + 1, contents.size()));
    }
    return std::nullopt;
}

/// Whether what came of reading a key's file means that nobody has stored a text.
bool isNew(ErrorCode result, const std::string& contents)
{
    return result == error::fileNotFound || (result == error::none && contents.empty());
}

/// Excludes others from storing a first text. It is on the folder, since a file made to be locked could not be opened by
/// other users, and would be left empty by a holder that is killed.
class Turn
{
public:
    Turn()
    {
        folder_.take(open(folder().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        bool locked = false;
        do {
            locked = folder_.open() && flock(folder_.get(), LOCK_EX) == 0;
        } while (folder_.open() && !locked && errno == EINTR);
        error_ = locked ? error::none : fromErrno(errno);
    }
    ~Turn()
    {
        if (folder_.open()) {
            flock(folder_.get(), LOCK_UN); // closing would leave it to the copy of a forked child
        }
    }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

    ErrorCode error() const { return error_; }

private:
    Descriptor folder_;
    ErrorCode error_;
};

/// Stores the text in a file that is empty or not there, and gets what the file holds then.
ErrorCode storeFirst(const std::string& file, const std::string& line, std::string& contents)
{
    std::error_code fault;
    std::filesystem::create_directories(folder(), fault);
    if (fault) {
        return fromErrno(fault.value());
    }
    const Turn turn;
    if (turn.error() != error::none) {
        return turn.error();
    }
    const ErrorCode result = readFile(file, contents); // somebody else may have been quicker
    if (!isNew(result, contents)) {
        return result;
    }
    contents = line;
    return replaceFile(file, contents);
}

} // namespace

ErrorCode machineSetting(const std::string& subKey, const std::string& name, std::string& text)
{
    const std::string file = fileOf(subKey);
    const std::string wanted = name.c_str();
    std::string contents;
    ErrorCode result = readFile(file, contents);
    if (isNew(result, contents)) {
        result = storeFirst(file, encoded(wanted, "=") + "=" + encoded(text.c_str(), "") + "\n", contents);
    }
    if (result != error::none) {
        return result;
    }
    const std::optional<std::string> stored = find(contents, wanted);
    if (!stored) {
        return error::fileNotFound;
    }
    if (stored->size() > longestText) {
        return error::invalidData;
    }
    text = stored->c_str();
    return error::none;
}

ErrorCode removeMachineSettings(const std::string& subKey)
{
    return deleteFile(fileOf(subKey));
}

} // namespace brvUtils::os
