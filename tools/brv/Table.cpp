#include "Table.h"

#include <algorithm>
#include <numeric>

namespace brvTool {

namespace {

constexpr std::size_t gap = 2; // between columns
constexpr std::size_t narrowest = 12; // a column that texts are wrapped in

struct Text
{
    std::string text;
    bool right = false;
    Tone tone = Tone::plain;
};

using Row = std::vector<Text>;

bool isContinuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/// Characters, of which each takes one column.
std::size_t widthOf(const std::string& text)
{
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char byte) { return !isContinuation(byte); }));
}

Text textOf(const Cell& cell)
{
    return {printable(cell.shown()), cell.value.is_number(), cell.tone};
}

/// Bytes of the text's first `width` characters.
std::size_t bytesOf(const std::string& text, std::size_t width)
{
    std::size_t at = 0;
    for (; at < text.size(); ++at) {
        if (!isContinuation(text[at]) && width-- == 0) {
            break;
        }
    }
    return at;
}

/// Cuts the text into lines of at most that width: at blanks, else behind separators of paths, else anywhere.
std::vector<std::string> wrapped(std::string text, std::size_t width)
{
    std::vector<std::string> lines;
    while (widthOf(text) > width) {
        const std::size_t end = bytesOf(text, width);
        std::size_t cut = text.rfind(' ', end);
        const bool atBlank = cut != std::string::npos && cut > end / 2;
        if (!atBlank) {
            const std::size_t separator = text.find_last_of("/\\;,", end - 1);
            cut = separator != std::string::npos && separator > end / 2 ? separator + 1 : end;
        }
        lines.push_back(text.substr(0, cut));
        text.erase(0, cut + (atBlank ? 1 : 0));
    }
    lines.push_back(std::move(text));
    return lines;
}

const char* codeOf(Tone tone)
{
    switch (tone) {
    case Tone::good: return "\x1b[32m";
    case Tone::warning: return "\x1b[33m";
    case Tone::bad: return "\x1b[31m";
    default: return "";
    }
}

/// The widths of columns, of which the widest are made narrower until all fit.
std::vector<std::size_t> widthsOf(const std::vector<Row>& rows, std::size_t available)
{
    std::vector<std::size_t> widths(rows.front().size(), 0);
    for (const Row& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], widthOf(row[i].text));
        }
    }
    const auto total = [&] { return std::accumulate(widths.begin(), widths.end(), gap * (widths.size() - 1)); };
    while (total() > available) {
        std::size_t& widest = *std::max_element(widths.begin(), widths.end());
        if (widest <= narrowest) {
            break;
        }
        --widest;
    }
    return widths;
}

void printRow(std::string& out, const Row& row, const std::vector<std::size_t>& widths, bool colour)
{
    std::vector<std::vector<std::string>> cells;
    std::size_t height = 1;
    for (std::size_t i = 0; i < row.size(); ++i) {
        cells.push_back(wrapped(row[i].text, widths[i]));
        height = std::max(height, cells.back().size());
    }
    for (std::size_t line = 0; line < height; ++line) {
        std::string text;
        for (std::size_t i = 0; i < row.size(); ++i) {
            const std::string piece = line < cells[i].size() ? cells[i][line] : "";
            const std::string blanks(widths[i] - std::min(widths[i], widthOf(piece)), ' ');
            const bool coloured = colour && row[i].tone != Tone::plain && !piece.empty();
            const std::string shown = coloured ? codeOf(row[i].tone) + piece + "\x1b[0m" : piece;
            text += (i > 0 ? std::string(gap, ' ') : "") + (row[i].right ? blanks + shown : shown + blanks);
        }
        text.erase(text.find_last_not_of(' ') + 1);
        out += text + "\n";
    }
}

void printRows(std::string& out, const std::vector<Row>& rows, const TableStyle& style)
{
    const std::vector<std::size_t> widths = widthsOf(rows, static_cast<std::size_t>(std::max(style.width, 1)));
    for (const Row& row : rows) {
        printRow(out, row, widths, style.colour);
    }
}

void print(std::string& out, const Fields& fields, const TableStyle& style)
{
    std::vector<Row> rows;
    for (const auto& [label, cell] : fields.values) {
        Text value = textOf(cell);
        value.right = false;
        rows.push_back({Text{printable(label.title)}, std::move(value)});
    }
    out += fields.title.empty() ? "" : printable(fields.title) + "\n";
    if (!rows.empty()) {
        printRows(out, rows, style);
    }
}

void print(std::string& out, const Table& table, const TableStyle& style)
{
    out += table.title.empty() ? "" : printable(table.title) + "\n";
    if (table.rows.empty()) {
        out += table.none.empty() ? "" : table.none + "\n";
        return;
    }
    std::vector<Row> rows(1);
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        const bool right = std::all_of(table.rows.begin(), table.rows.end(), [&](const auto& row) { return row[i].value.is_number() || row[i].value.is_null(); });
        rows.front().push_back({printable(table.columns[i].title), right});
    }
    for (const std::vector<Cell>& cells : table.rows) {
        Row row;
        for (std::size_t i = 0; i < cells.size(); ++i) {
            row.push_back(textOf(cells[i]));
            row.back().right = rows.front()[i].right;
        }
        rows.push_back(std::move(row));
    }
    printRows(out, rows, style);
}

void print(std::string& out, const Lines& lines, const TableStyle&)
{
    out += lines.text.empty() || lines.text.back() == '\n' ? lines.text : lines.text + "\n";
}

} // namespace

std::string printable(std::string text)
{
    std::replace_if(text.begin(), text.end(), [](char byte) { return static_cast<unsigned char>(byte) < 0x20 || byte == 0x7f; }, '?');
    return text;
}

std::string toText(const Answer& answer, const TableStyle& style)
{
    std::string out;
    for (const auto& block : answer) {
        std::string text;
        std::visit([&](const auto& each) { print(text, each, style); }, block);
        out += (out.empty() || text.empty() ? "" : "\n") + text;
    }
    return out;
}

} // namespace brvTool
