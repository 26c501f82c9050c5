#include "CsvWriter.h"

#include <brvUtils/core/Errors.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <system_error>

namespace suite {

namespace {

constexpr std::size_t mostWaiting = 1024 * 1024; // bytes
constexpr int digits = 12;

std::string lineOf(const std::vector<std::string>& names)
{
    std::string line;
    for (const std::string& name : names) {
        line += (line.empty() ? "" : ",") + name;
    }
    return line + '\n';
}

/// The numbers of a row; empty when it holds anything else. Whatever the locale, as all that is written here.
std::vector<double> numbersIn(const std::string& row)
{
    std::vector<double> numbers;
    const char* const end = row.data() + row.size();
    for (const char* place = row.data();; ++place) {
        double number = 0.0;
        const auto [next, error] = std::from_chars(place, end, number);
        if (error != std::errc() || (next != end && *next != ',')) {
            return {};
        }
        numbers.push_back(number);
        if (next == end) {
            return numbers;
        }
        place = next;
    }
}

/// The end of a table that has a first line.
struct TableEnd
{
    std::uintmax_t size = 0; ///< Of all whole lines.
    std::string lastLine; ///< Empty when there is none but the first one.
};

TableEnd endOf(std::ifstream& table, std::uintmax_t size)
{
    for (std::uintmax_t length = 4096;; length *= 2) {
        const std::uintmax_t begin = size > length ? size - length : 0;
        std::string text(static_cast<std::size_t>(size - begin), '\0');
        table.seekg(static_cast<std::streamoff>(begin));
        table.read(text.data(), static_cast<std::streamsize>(text.size()));
        const std::size_t last = text.rfind('\n');
        const std::size_t before = last == text.npos || last == 0 ? text.npos : text.rfind('\n', last - 1);
        if (before != text.npos) {
            return {begin + last + 1, text.substr(before + 1, last - before - 1)};
        }
        if (begin == 0 || !table) {
            return {last == text.npos ? 0 : begin + last + 1, ""};
        }
    }
}

std::string lastFault()
{
    return errno != 0 ? std::generic_category().message(errno) : "it cannot be written";
}

} // namespace

CsvWriter::CsvWriter(std::filesystem::path file, const std::vector<std::string>& names, std::chrono::milliseconds interval)
    : file_(std::move(file))
    , columns_(names.size())
    , interval_(interval)
    , attempt_(std::chrono::steady_clock::now())
{
    const std::string header = lineOf(names);
    std::error_code none;
    if (std::filesystem::is_regular_file(file_, none)) {
        goOn(header);
    }
    if (!open()) {
        throw brvUtils::FileError(file_.u8string() + " cannot be opened: " + fault_);
    }
    regular_ = std::filesystem::is_regular_file(file_, none);
    if (size_ == 0) {
        text_ = header;
        write();
    }
}

CsvWriter::~CsvWriter()
{
    write();
}

/// Finds the end of the table that the file holds.
void CsvWriter::goOn(const std::string& header)
{
    std::ifstream table(file_, std::ios::binary);
    const std::uintmax_t size = std::filesystem::file_size(file_);
    std::string begin(static_cast<std::size_t>(std::min<std::uintmax_t>(size, header.size())), '\0');
    if (!table.read(begin.data(), static_cast<std::streamsize>(begin.size())) || header.compare(0, begin.size(), begin) != 0) {
        throw brvUtils::FileError(file_.u8string() + " cannot be read, or is no recording with these columns");
    }
    if (size >= header.size()) {
        const TableEnd end = endOf(table, size);
        size_ = end.size;
        lastRow_ = numbersIn(end.lastLine);
        if (lastRow_.size() != columns_ && size_ > header.size()) {
            throw brvUtils::FileError(file_.u8string() + " is damaged: its last row is \"" + end.lastLine + "\"");
        }
    }
    removed_ = size - size_;
}

void CsvWriter::add(const std::vector<double>& row)
{
    if (text_.size() >= mostWaiting) {
        ++lostRows_;
    } else {
        char number[64];
        for (std::size_t column = 0; column < columns_; ++column) {
            const auto end = std::to_chars(number, number + sizeof number, row[column], std::chars_format::general, digits).ptr;
            text_.append(column == 0 ? "" : ",").append(number, end);
        }
        text_ += '\n';
        ++waitingRows_;
    }
    if (std::chrono::steady_clock::now() - attempt_ >= interval_) {
        write();
    }
}

bool CsvWriter::write()
{
    attempt_ = std::chrono::steady_clock::now();
    if (text_.empty()) {
        return true;
    }
    if (!stream_.is_open() && !open()) {
        return false;
    }
    errno = 0;
    stream_.write(text_.data(), static_cast<std::streamsize>(text_.size()));
    if (!stream_.flush()) {
        fault_ = lastFault();
        stream_.close(); // which may write some more
        cutBack();
        return false;
    }
    size_ += text_.size();
    text_.clear();
    waitingRows_ = 0;
    fault_.clear();
    return true;
}

/// Behind the last whole row.
bool CsvWriter::open()
{
    errno = 0;
    if (size_ + removed_ > 0 && !cutBack()) {
        fault_ = lastFault();
        return false;
    }
    stream_.clear();
    stream_.open(file_, std::ios::binary | std::ios::app);
    if (!stream_) {
        fault_ = lastFault();
    }
    return stream_.is_open();
}

/// Removes what is behind the whole rows. False when it may still be there.
bool CsvWriter::cutBack() const
{
    std::error_code fault;
    if (regular_) {
        std::filesystem::resize_file(file_, size_, fault);
    }
    return !fault;
}

} // namespace suite
