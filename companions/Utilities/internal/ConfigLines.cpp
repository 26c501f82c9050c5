#include "Utilities/internal/ConfigLines.h"

namespace Utilities::internal {

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view blanks = " \t\r\n\v\f";
    const std::size_t first = text.find_first_not_of(blanks);
    return first == text.npos ? text.substr(text.size()) : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

ConfigLines::ConfigLines(std::string_view text)
    : text_(text)
{
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    end_ = text.substr(0, byteOrderMark.size()) == byteOrderMark ? byteOrderMark.size() : 0;
}

bool ConfigLines::next()
{
    if (end_ == text_.size()) {
        return false;
    }
    begin_ = end_;
    const std::size_t lineEnd = text_.find('\n', begin_);
    end_ = lineEnd == text_.npos ? text_.size() : lineEnd + 1;

    kind_ = Kind::other;
    const std::string_view line = trimmed(text_.substr(begin_, lineEnd - begin_));
    if (line.empty() || line.front() == '#' || line.front() == ';') {
        return true;
    }
    if (line.front() == '[') {
        const std::size_t close = line.find(']');
        if (close != line.npos) {
            kind_ = Kind::section;
            section_ = trimmed(line.substr(1, close - 1));
        }
        return true;
    }
    const std::size_t equal = line.find('=');
    if (equal != line.npos && equal > 0) {
        kind_ = Kind::entry;
        key_ = trimmed(line.substr(0, equal));
        value_ = trimmed(line.substr(equal + 1));
    }
    return true;
}

} // namespace Utilities::internal
