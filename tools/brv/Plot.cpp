#include "Plot.h"

#include "Table.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace brvTool {

namespace {

constexpr int height = 20;
constexpr int margin = 12; // for the numbers of the ordinate
constexpr char glyphs[] = "*+ox#@%&";

struct Limits
{
    double least = std::numeric_limits<double>::infinity();
    double most = -std::numeric_limits<double>::infinity();

    void take(double value)
    {
        if (std::isfinite(value)) {
            least = std::min(least, value);
            most = std::max(most, value);
        }
    }
    bool any() const { return least <= most; }
    /// 0 to places - 1; halves, so that no range overflows.
    int place(double value, int places) const
    {
        const double span = most / 2 - least / 2;
        const double part = span > 0 ? (value / 2 - least / 2) / span : 0.5;
        return std::clamp(static_cast<int>(part * places), 0, places - 1);
    }
};

Limits limitsOf(const std::vector<double>& values)
{
    Limits limits;
    for (const double value : values) {
        limits.take(value);
    }
    return limits;
}

} // namespace

std::vector<Plot::Range> Plot::ranges(const Series& one, int places) const
{
    const Limits limits = limitsOf(x);
    std::vector<Limits> found(static_cast<std::size_t>(places));
    for (std::size_t i = 0; i < x.size(); ++i) {
        if (std::isfinite(x[i])) {
            found[static_cast<std::size_t>(limits.place(x[i], places))].take(one.values[i]);
        }
    }
    std::vector<Range> result;
    for (std::size_t i = 0; i < found.size(); ++i) {
        if (found[i].any()) {
            const double part = (static_cast<double>(i) + 0.5) / places;
            result.push_back({limits.least * (1 - part) + limits.most * part, found[i].least, found[i].most});
        }
    }
    return result;
}

std::string drawText(const Plot& plot, int width)
{
    const int places = std::max(width - margin - 1, 10);
    const Limits abscissa = limitsOf(plot.x);
    Limits ordinate;
    for (const Plot::Series& each : plot.series) {
        const Limits limits = limitsOf(each.values);
        ordinate.take(limits.least);
        ordinate.take(limits.most);
    }
    if (!abscissa.any() || !ordinate.any()) {
        return "no values to draw\n";
    }
    std::vector<std::string> rows(height, std::string(static_cast<std::size_t>(places), ' '));
    std::string legend;
    for (std::size_t i = 0; i < plot.series.size(); ++i) {
        const char glyph = glyphs[i % (sizeof glyphs - 1)];
        legend += fmt::format("{}{} {}", i > 0 ? "   " : "", glyph, printable(plot.series[i].name));
        for (const Plot::Range& range : plot.ranges(plot.series[i], places)) {
            const auto column = static_cast<std::size_t>(abscissa.place(range.x, places));
            for (int row = ordinate.place(range.least, height); row <= ordinate.place(range.most, height); ++row) {
                rows[static_cast<std::size_t>(height - 1 - row)][column] = glyph;
            }
        }
    }
    std::string text = std::string(margin + 1, ' ') + legend + "\n";
    for (int row = 0; row < height; ++row) {
        const bool labelled = row == 0 || row == height - 1;
        const std::string label = labelled ? fmt::format("{:.5g}", row == 0 ? ordinate.most : ordinate.least) : "";
        std::string line = fmt::format("{:>{}}|{}", label, margin, rows[static_cast<std::size_t>(row)]);
        line.erase(line.find_last_not_of(' ') + 1);
        text += line + "\n";
    }
    const std::string least = fmt::format("{:.5g}", abscissa.least), most = fmt::format("{:.5g}", abscissa.most);
    const int room = std::max(places - static_cast<int>(least.size() + most.size()), 1);
    return text + std::string(margin, ' ') + "+" + std::string(static_cast<std::size_t>(places), '-') + "\n"
        + std::string(margin + 1, ' ') + least + fmt::format("{:^{}}", printable(plot.over), room) + most + "\n";
}

} // namespace brvTool
