#pragma once

#include <string>
#include <vector>

namespace brvTool {

/// A line of a sectioned configuration file that matters: an entry, or one that is ignored.
struct FileLine
{
    int number = 0; ///< From 1.
    std::string section;
    std::string name; ///< Empty: the line is no entry.
    std::string text;
};

/// Where things stand in a file of the kind that Utilities::ConfigFile reads, which does not tell lines. What the values are
/// is for ConfigFile to say.
class FileLines
{
public:
    /// No lines when the file cannot be read.
    explicit FileLines(const std::string& path);

    /// "FILE:LINE" of the entry that counts, "FILE" when there is none.
    std::string placeOf(const std::string& section, const std::string& name) const;

    /// Entries that a later one of the same section and name replaces.
    std::vector<FileLine> repeated() const;
    /// Lines that are no entries, sections or comments.
    std::vector<FileLine> ignored() const;
    /// The sections that have entries, each once, in order.
    std::vector<std::string> sections() const;

    const std::string& path() const { return path_; }
    /// "FILE:LINE".
    std::string place(const FileLine& line) const { return path_ + ":" + std::to_string(line.number); }

private:
    std::string path_;
    std::vector<FileLine> lines_;
};

} // namespace brvTool
