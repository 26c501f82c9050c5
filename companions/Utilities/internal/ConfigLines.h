#pragma once

#include <cstddef>
#include <string_view>

namespace Utilities::internal {

/// Goes through the text of a sectioned configuration file line by line; the one place that knows its syntax. What it
/// answers are views of that text.
class ConfigLines
{
public:
    enum class Kind {
        section, ///< `[section]`
        entry, ///< `key = value`
        other ///< Comments, empty lines and what means nothing.
    };

    explicit ConfigLines(std::string_view text);

    /// Goes to the next line; false at the end of the text.
    bool next();

    Kind kind() const { return kind_; }
    /// The section that the line opens or belongs to.
    std::string_view section() const { return section_; }
    /// Of an entry.
    std::string_view key() const { return key_; }
    /// Of an entry; a place in the text also when it is empty.
    std::string_view value() const { return value_; }

    /// Where the line begins, and where the next one does.
    std::size_t begin() const { return begin_; }
    std::size_t end() const { return end_; }

private:
    std::string_view text_;
    std::size_t begin_ = 0;
    std::size_t end_;
    Kind kind_ = Kind::other;
    std::string_view section_ = "Common";
    std::string_view key_;
    std::string_view value_;
};

/// `text` without the blanks around it.
std::string_view trimmed(std::string_view text);

} // namespace Utilities::internal
