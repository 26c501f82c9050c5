#pragma once

#include <cstddef>
#include <list>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <Utilities/export.h>

namespace Utilities {

/// A sectioned configuration file, read whole into a copy that answers and takes changes.
///
/// `[Section]` lines divide the file; entries are `key = value` or `key=value`, with the blanks around key and value cut
/// off. Entries before any section belong to "Common". A line that starts with `#` or `;` is a comment; everywhere else
/// these are ordinary characters. Keys and sections are case-sensitive. A section may come several times; of a key that
/// comes several times in a section the last one counts. Lines end in LF or CRLF; a byte-order mark is passed over. Lines
/// that are none of these are ignored and kept. All texts are UTF-8, paths too; in a path `/` and `\` are the same.
///
/// What changes an object needs it alone; as long as nobody does, any number of threads may read it.
class UTILITIES_API ConfigFile
{
public:
    /// Nothing is loaded, "Common" is selected.
    ConfigFile() = default;
    /// Loads the file; isLoaded tells whether that went well.
    explicit ConfigFile(const std::string& path);

    /// Replaces the copy, and forgets changes that were not saved. The selected section stays selected. False when `path`
    /// is no regular file or cannot be read: the copy is then empty, and getFileName tells the path all the same.
    bool load(const std::string& path);
    /// The last load went well.
    bool isLoaded() const { return loaded_; }
    /// The path of the last load, as it was given; empty before any.
    const std::string& getFileName() const { return fileName_; }

    /// Selects the section that later reads see, also over later loads. It need not exist.
    void setSection(const std::string& section) { section_ = section; }
    /// The section that reads see; "Common" at first.
    const std::string& getSection() const { return section_; }

    /// The value of `key` in the selected section or, when it does not list the key, in "Common"; empty when neither does.
    std::string operator[](const std::string& key) const;

    /// The value of `key` in the selected section alone. False when it is not there: `value` is left as it was.
    bool readString(const std::string& key, std::string& value) const;
    /// The same for a decimal number, with or without a sign. Text after it, or a number that no `int` holds, is false too.
    bool readInt(const std::string& key, int& value) const;
    /// The same for a hexadecimal number, with or without `0x` in front.
    bool readHexaUnsignedInt(const std::string& key, unsigned int& value) const;

    /// The keys of a section in the order of the file, each once, where it comes first.
    std::list<std::string> getVariablesNames(const std::string& section) const;

    /// Creates or replaces an entry of the copy; the next save writes it. False, and nothing changes, when a file could not
    /// hold it: a line end in any of the texts, a `]` in the section, an empty key, a `=` in it, or `[`, `#` or `;` in front of
    /// it. Blanks around the texts are cut off.
    bool modifyEntry(const std::string& key, const std::string& section, const std::string& value);
    /// The same in the selected section, and saves to the file that was loaded at once. False when either fails.
    bool modifyEntry(const std::string& key, const std::string& value);
    /// Creates or replaces an entry of the copy, which no save writes. False as for modifyEntry.
    bool setEntry(const std::string& key, const std::string& section, const std::string& value);
    /// Removes the entry from the copy, and from the file by the next save, wherever the key stands in that section.
    void deleteEntry(const std::string& key, const std::string& section);

    /// Writes the changes made since the last load or save. They are merged into the file as it is now, so that what others
    /// saved meanwhile is not lost, also when they save at the same moment; reads do not see it until the next load. Under
    /// another name than that of the file that was loaded, the whole of that file is written with its changes, over what is
    /// there, and they stay due. When nothing could be loaded they are merged into any file, and stay due unless it has the
    /// name of that load. Names are compared as texts, where kinds of separators and `.` parts do not count, nor case if the
    /// system ignores it.
    /// Comments, order and line ends of what did not change stay as they are, byte for byte. A new entry is put behind the
    /// last one of its section.
    ///
    /// The file is replaced in one step, so a save that is killed or finds the disk full leaves the old one whole. Waits
    /// while another process saves the same file. False when the file cannot be read or written: the changes stay due.
    bool save(const std::string& path);

    /// Creates a file without entries, unless there is one: that stays as it is. True when there is a file afterwards.
    static bool createEmptyConfigFile(const std::string& path);

private:
    struct Entry
    {
        std::string value;
        std::size_t place = 0; ///< Entries of higher numbers come later.
    };
    using Section = std::unordered_map<std::string, Entry>;
    struct Change
    {
        std::string section;
        std::string key;
        std::optional<std::string> value; ///< None: the entry is removed.
    };

    void put(Section& section, std::string_view key, std::string_view value);
    const std::string* find(const std::string& section, const std::string& key) const;
    std::string changed(const std::string& text) const;

    std::string fileName_;
    std::string section_ = "Common";
    bool loaded_ = false;
    std::string text_; ///< The bytes of the file, without what `changes_` holds.
    std::unordered_map<std::string, Section> sections_; ///< What reads see.
    std::size_t entriesPut_ = 0;
    std::vector<Change> changes_; ///< In the order they were made; not saved yet.
};

} // namespace Utilities
