#pragma once

#include "brvUtils/data/internal/CsvColumn.h"
#include "brvUtils/data/internal/CsvFieldEnds.h"
#include "brvUtils/os/InputFile.h"

#include <cstdint>
#include <memory>

namespace brvUtils::csv {

/// A range of a file and the lines that begin in it, read and parsed into columns of its own. Reused for one range after the
/// other, so that its memory is there already, and in the cache. One thread at a time.
class Block
{
public:
    /// Reads and parses the lines that begin in [first, last), the last of them to its end. A line begins at `first` only
    /// when a line feed stands before it. \param total where the file ends, at the latest.
    void load(const os::InputFile& file, const Table& table, std::uint64_t first, std::uint64_t last, std::uint64_t total);

    /// Parses again, knowing the kinds of columns that are known by now.
    void parse(const Table& table);

    /// The columns that rows of the block reach: a leading part of those of the table. Texts lie in the block.
    const std::vector<Column>& columns() const { return columns_; }
    std::size_t reached() const { return reached_; }

    /// The file ended earlier than it should.
    bool cut() const { return cut_; }

private:
    std::size_t fill(const os::InputFile& file, std::uint64_t from, std::size_t count);
    void readToLineEnd(const os::InputFile& file, std::uint64_t from, std::uint64_t total);
    void reserve(std::size_t size);
    void terminate();
    void reach(const Table& table);
    std::size_t findEnds(const char* piece, std::size_t size, char separator);
    static void parseField(Column& column, const char* p, const char* end, const Table& table);

    std::unique_ptr<char[]> text_;
    std::size_t capacity_ = 0;
    std::size_t size_ = 0;
    std::size_t begin_ = 0; ///< Of the first line.
    FieldEnds ends_;
    std::vector<Column> columns_;
    std::size_t reached_ = 0;
    bool cut_ = false;
};

} // namespace brvUtils::csv
