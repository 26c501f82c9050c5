#include "brvUtils/data/internal/CsvBlock.h"

#include "brvUtils/data/internal/CsvNumbers.h"

#include <algorithm>

namespace brvUtils::csv {
namespace {

constexpr std::size_t room = 2 + FieldEnds::overread; ///< Behind the text: for a line end, and for what is loaded in passing.

const char* find(char c, const char* p, const char* end)
{
    const void* found = p == end ? nullptr : std::memchr(p, c, static_cast<std::size_t>(end - p));
    return found == nullptr ? end : static_cast<const char*>(found);
}

} // namespace

void Block::load(const os::InputFile& file, const Table& table, std::uint64_t first, std::uint64_t last, std::uint64_t total)
{
    cut_ = false;
    size_ = 0;
    reserve(static_cast<std::size_t>(last - first) + 1);
    fill(file, first - 1, static_cast<std::size_t>(last - first) + 1);
    const char* text = text_.get();
    const char* lineFeed = find('\n', text, text + size_);
    begin_ = lineFeed == text + size_ ? size_ : static_cast<std::size_t>(lineFeed - text) + 1;
    if (begin_ < size_ && !cut_ && text[size_ - 1] != '\n') {
        readToLineEnd(file, last, total);
    }
    terminate();
    parse(table);
}

/// \return how many bytes there were.
std::size_t Block::fill(const os::InputFile& file, std::uint64_t from, std::size_t count)
{
    std::size_t got = 0;
    const bool failed = file.read(from, text_.get() + size_, count, got) != os::error::none;
    size_ += got;
    cut_ = cut_ || failed || got < count;
    return got;
}

void Block::readToLineEnd(const os::InputFile& file, std::uint64_t from, std::uint64_t total)
{
    std::size_t step = 256;
    while (from < total && !cut_) {
        const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(step, total - from));
        reserve(size_ + count);
        const char* added = text_.get() + size_;
        const std::size_t got = fill(file, from, count);
        const char* lineFeed = find('\n', added, added + got);
        if (lineFeed != added + got) {
            size_ = static_cast<std::size_t>(lineFeed - text_.get()) + 1;
            return;
        }
        from += got;
        step = std::max(step, size_ / 2);
    }
}

void Block::reserve(std::size_t size)
{
    if (capacity_ < size + room) {
        const std::size_t larger = std::max(size + room, capacity_ + capacity_ / 4);
        std::unique_ptr<char[]> text(new char[larger]);
        std::copy_n(text_.get(), size_, text.get());
        text_ = std::move(text);
        capacity_ = larger;
    }
}

/// The last line of a file may lack its line feed. A carriage return there is none of a line end.
void Block::terminate()
{
    if (begin_ < size_ && text_[size_ - 1] != '\n') {
        if (text_[size_ - 1] == '\r') {
            text_[size_++] = '\r';
        }
        text_[size_++] = '\n';
    }
    std::fill_n(text_.get() + size_, FieldEnds::overread, '\0');
}

void Block::parse(const Table& table)
{
    for (std::size_t i = 0; i < reached_; ++i) {
        columns_[i].clear(Kind::unknown);
    }
    reached_ = 0;
    const char* const end = text_.get() + size_;
    const char* field = text_.get() + begin_;
    Column* column = columns_.data(); // that the field is for, unless there is none
    const Column* reachedEnd = column;
    for (const char* piece = field; piece != end;) {
        const std::size_t size = std::min(FieldEnds::pieceSize, static_cast<std::size_t>(end - piece));
        const std::size_t count = findEnds(piece, size, table.separator);
        for (std::size_t i = 0; i < count; ++i) {
            const char* const stop = piece + ends_[i];
            const bool endsLine = *stop == '\n';
            const char* const fieldEnd = stop - (endsLine && stop != field && stop[-1] == '\r');
            if (column == reachedEnd && reached_ < table.names.size() && !(endsLine && fieldEnd == field && column == columns_.data())) {
                reach(table);
                reachedEnd = columns_.data() + reached_;
                column = columns_.data() + reached_ - 1;
            }
            if (column != reachedEnd && !(endsLine && fieldEnd == field && column == columns_.data())) {
                parseField(*column++, field, fieldEnd, table);
            }
            column = endsLine ? columns_.data() : column;
            field = stop + 1;
        }
        piece += size;
    }
}

/// A carriage return that belongs to a line end is no separator.
std::size_t Block::findEnds(const char* piece, std::size_t size, char separator)
{
    const std::size_t count = ends_.find(piece, size, separator);
    return separator == '\r' ? ends_.removeIf(count, [piece](std::size_t end) { return piece[end] == '\r' && piece[end + 1] == '\n'; }) : count;
}

/// What is known of the columns behind the last one that was reached so far.
void Block::reach(const Table& table)
{
    if (reached_ == columns_.size()) {
        columns_.emplace_back();
    }
    columns_[reached_].clear(table.kinds[reached_]);
    ++reached_;
}

void Block::parseField(Column& column, const char* p, const char* end, const Table& table)
{
    if (column.kind == Kind::unknown) {
        const bool isNumber = table.numbers == Kind::integer ? beginsInteger(p, end) : table.numbers == Kind::number && beginsDouble(p, end);
        column.kind = isNumber ? table.numbers : table.texts();
    }
    switch (column.kind) {
    case Kind::integer: {
        std::int32_t value = 0;
        if (parseInteger(p, end, value)) {
            column.add(value);
        }
        break;
    }
    case Kind::number: {
        double value = 0.0;
        if (parseDouble(p, end, value)) {
            column.add(value);
        }
        break;
    }
    case Kind::textUnlessInteger:
    case Kind::textUnlessNumber:
    case Kind::text:
        if (!(column.kind == Kind::textUnlessInteger ? beginsInteger(p, end) : column.kind == Kind::textUnlessNumber && beginsDouble(p, end))) {
            column.add(std::string_view(p, static_cast<std::size_t>(end - p)));
        }
        break;
    case Kind::unknown:
    case Kind::unwanted:
        break;
    }
}

} // namespace brvUtils::csv
