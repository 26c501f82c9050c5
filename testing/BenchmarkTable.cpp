#include "testing/BenchmarkTable.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <iostream>

namespace brvTesting {

namespace {

/// Three digits that count, or all in front of the point.
std::string readable(std::optional<double> value)
{
    if (!value) {
        return "-";
    }
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", *value < 10 ? 2 : *value < 100 ? 1 : 0, *value);
    return text;
}

std::optional<double> ratio(double ours, std::optional<double> other)
{
    return other && *other > 0 ? std::optional<double>(ours / *other) : std::nullopt;
}

std::string jsonNumber(std::optional<double> value)
{
    char text[64];
    std::snprintf(text, sizeof text, "%.6g", value.value_or(0));
    return value ? text : "null";
}

std::string jsonText(const std::string& text)
{
    std::string quoted = "\"";
    for (const char character : text) {
        if (character == '"' || character == '\\') {
            quoted += '\\';
        }
        quoted += character;
    }
    return quoted + '"';
}

/// Letters, not bytes: rows may be named in UTF-8.
std::size_t widthOf(const std::string& text)
{
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char character) { return (character & 0xC0) != 0x80; }));
}

using Line = std::vector<std::string>;

void printAligned(std::ostream& stream, const std::vector<Line>& lines)
{
    std::vector<std::size_t> widths(lines.front().size());
    for (const Line& line : lines) {
        for (std::size_t i = 0; i < line.size(); ++i) {
            widths[i] = std::max(widths[i], widthOf(line[i]));
        }
    }
    for (const Line& line : lines) {
        for (std::size_t i = 0; i < line.size(); ++i) {
            const std::string padding(widths[i] - widthOf(line[i]), ' ');
            // Names to the left, numbers to the right.
            stream << (i == 0 ? "" : "  ") << (i == 0 ? line[i] + padding : padding + line[i]);
        }
        stream << '\n';
    }
}

/// Changes the value only when it can.
bool parse(const char* text, double& value)
{
    char* end = nullptr;
    const double number = std::strtod(text, &end);
    if (end == text || *end != '\0' || !std::isfinite(number) || number <= 0) {
        return false;
    }
    value = number;
    return true;
}

[[noreturn]] void refuse(const std::vector<BenchmarkNumber>& numbers)
{
    std::cerr << "the only options are --json FILE";
    for (const BenchmarkNumber& number : numbers) {
        std::cerr << ", " << number.option << " N with N above 0";
    }
    std::cerr << '\n';
    std::exit(2);
}

} // namespace

std::optional<double> BenchmarkRow::peer() const
{
    std::optional<double> best;
    for (const auto& [name, value] : peers) {
        best = best ? std::min(*best, value) : value;
    }
    return best;
}

BenchmarkTable::BenchmarkTable(int argc, char** argv, const std::vector<BenchmarkNumber>& numbers)
{
    for (int i = 1; i < argc; i += 2) {
        const std::string option = argv[i];
        const auto number = std::find_if(numbers.begin(), numbers.end(), [&](const BenchmarkNumber& known) { return known.option == option; });
        const char* const value = i + 1 < argc ? argv[i + 1] : nullptr;
        if (value == nullptr || (number == numbers.end() ? option != "--json" : !parse(value, *number->value))) {
            refuse(numbers);
        }
        if (number == numbers.end()) {
            open(value);
        }
    }
}

void BenchmarkTable::open(const std::string& file)
{
    json_ = std::ofstream(file, std::ios::binary);
    if (!json_) {
        std::cerr << "cannot write \"" << file << "\"\n";
        std::exit(2);
    }
}

void BenchmarkTable::print(std::ostream& stream) const
{
    std::vector<std::string> peers;
    for (const BenchmarkRow& row : rows_) {
        for (const auto& [name, value] : row.peers) {
            if (std::find(peers.begin(), peers.end(), name) == peers.end()) {
                peers.push_back(name);
            }
        }
    }
    std::vector<Line> lines{{"", "unit", "ours"}};
    lines.front().insert(lines.front().end(), peers.begin(), peers.end());
    lines.front().insert(lines.front().end(), {"limit", "ours/peer", "ours/limit"});
    for (const BenchmarkRow& row : rows_) {
        Line line{row.row, row.unit, readable(row.ours)};
        for (const std::string& name : peers) {
            const auto found = std::find_if(row.peers.begin(), row.peers.end(), [&](const auto& peer) { return peer.first == name; });
            line.push_back(readable(found != row.peers.end() ? std::optional<double>(found->second) : std::nullopt));
        }
        line.push_back(readable(row.limit));
        line.push_back(readable(ratio(row.ours, row.peer())));
        line.push_back(readable(ratio(row.ours, row.limit)));
        lines.push_back(line);
    }
    printAligned(stream, lines);
}

void BenchmarkTable::writeJson(std::ostream& stream) const
{
    stream << '[';
    for (const BenchmarkRow& row : rows_) {
        stream << (&row == &rows_.front() ? "" : ",\n ") << "{\"row\": " << jsonText(row.row) << ", \"unit\": " << jsonText(row.unit)
               << ", \"ours\": " << jsonNumber(row.ours) << ", \"peer\": " << jsonNumber(row.peer())
               << ", \"limit\": " << jsonNumber(row.limit) << '}';
    }
    stream << "]\n";
}

int BenchmarkTable::finish()
{
    print(std::cout);
    std::cout.flush();
    if (json_.is_open()) {
        writeJson(json_);
        json_.close();
    }
    if (!json_ || !std::cout) {
        std::cerr << "could not write all results\n";
        return 1;
    }
    return 0;
}

} // namespace brvTesting
