#include "brvUtils/data/internal/CsvBlock.h"

#include "brvUtils/data/internal/CsvNumbers.h"

#include <algorithm>

namespace brvUtils::csv {
namespace {

constexpr std::size_t room = 2 + overread; ///< Behind the text: for a line end, and for what is loaded in passing.

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
    std::fill_n(text_.get() + size_, overread, '\0');
}

void Block::parse(const Table& table)
{
    for (std::size_t i = 0; i < reached_; ++i) {
        columns_[i].clear(Kind::unknown);
    }
    reached_ = 0;
    table.needsExactEnds() ? parseLines<true>(table) : parseLines<false>(table);
}

template <bool exactEnds>
void Block::parseLines(const Table& table)
{
    const char separator = table.separator;
    const char* const end = text_.get() + size_;
    for (const char* p = text_.get() + begin_; p != end;) {
        const char* lineFeed = nullptr;
        const char* lineEnd = nullptr;
        if constexpr (exactEnds) {
            lineFeed = find('\n', p, end);
            lineEnd = lineFeed - (lineFeed != p && lineFeed[-1] == '\r');
        }
        if (*p == '\n' || (*p == '\r' && p[1] == '\n')) {
            p += *p == '\n' ? 1 : 2;
            continue;
        }
        for (std::size_t i = 0;; ++i) {
            if (i == table.names.size()) {
                p = find('\n', p, end) + 1;
                break;
            }
            if (i == reached_) {
                if (i == columns_.size()) {
                    columns_.emplace_back();
                }
                columns_[i].kind = table.kinds[i];
                ++reached_;
            }
            if constexpr (exactEnds) {
                const char* const behind = fieldEnd(p, lineEnd, separator);
                parseField<true>(columns_[i], p, behind, table);
                if (behind == lineEnd) {
                    p = lineFeed + 1;
                    break;
                }
                p = behind + 1;
            } else {
                p = parseField<false>(columns_[i], p, end, table);
                if (*p++ == '\n') {
                    break;
                }
            }
        }
    }
}

/// \return where the field ends; with exact ends that is known before.
template <bool exactEnds>
const char* Block::parseField(Column& column, const char* p, const char* end, const Table& table)
{
    const char separator = table.separator;
    for (;;) {
        switch (column.kind) {
        case Kind::unwanted:
            return fieldEnd(p, end, separator);
        case Kind::integer: {
            std::int32_t value = 0;
            if (const char* behind = parseInteger(p, end, separator, value)) {
                column.add(value);
                p = behind;
            }
            return exactEnds || *p == separator || *p == '\n' ? p : fieldEnd(p, end, separator);
        }
        case Kind::number: {
            double value = 0.0;
            if (const char* behind = parseDouble(p, end, separator, value)) {
                column.add(value);
                p = behind;
            }
            return exactEnds || *p == separator || *p == '\n' ? p : fieldEnd(p, end, separator);
        }
        case Kind::textUnlessInteger:
        case Kind::textUnlessNumber:
        case Kind::text: {
            const char* const behind = fieldEnd(p, end, separator);
            const char* const textEnd = behind - (!exactEnds && *behind == '\n' && behind != p && behind[-1] == '\r');
            const bool refused = column.kind == Kind::textUnlessInteger ? beginsInteger(p, textEnd, separator)
                : column.kind == Kind::textUnlessNumber && beginsDouble(p, textEnd, separator);
            if (!refused) {
                column.add(std::string_view(p, static_cast<std::size_t>(textEnd - p)));
            }
            return behind;
        }
        case Kind::unknown: {
            const bool isNumber = table.numbers == Kind::integer ? beginsInteger(p, end, separator)
                : table.numbers == Kind::number && beginsDouble(p, end, separator);
            column.kind = isNumber ? table.numbers : table.texts();
            break;
        }
        }
    }
}

} // namespace brvUtils::csv
