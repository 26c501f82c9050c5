#include "Command.h"
#include "DataTable.h"
#include "Plot.h"

#include <brvUtils/core/FileSystem.h>

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <memory>

// Commands that look at recorded data.

namespace brvTool {

namespace {

struct DataChoice
{
    std::string file;
    std::string separator;
    std::vector<std::string> columns;
    std::size_t rows = 10;
    std::string over;
    std::string output;

    std::unique_ptr<DataMatrix> load() const { return loadData(file, separator.empty() ? '\0' : separator == "tab" ? '\t' : separator[0]); }
};

constexpr std::size_t usualColumns = 8; // that fit beside each other

Cell bytes(std::uint64_t count)
{
    return {count, count < 10'000 ? fmt::format("{} B", count) : count < 10'000'000 ? fmt::format("{:.1f} kB", static_cast<double>(count) / 1e3) : fmt::format("{:.1f} MB", static_cast<double>(count) / 1e6)};
}

std::vector<Cell> describe(std::size_t number, const DataMatrix::DataCol& column)
{
    std::size_t count = 0;
    double least = HUGE_VAL, most = -HUGE_VAL, mean = 0.0;
    for (const double value : numbersOf(column)) {
        if (std::isfinite(value)) {
            least = std::min(least, value);
            most = std::max(most, value);
            mean += (value - mean) / static_cast<double>(++count);
        }
    }
    const auto orNone = [&](double value) { return count > 0 ? Json(value) : Json(); };
    const std::string unit = unitOf(column.name), type = typeOf(column);
    return {number, column.name, unit.empty() ? Json() : Json(unit), type.empty() ? Json() : Json(type), column.size(), orNone(least), orNone(most), orNone(mean)};
}

int info(const DataChoice& choice, Output& output)
{
    const auto data = choice.load();
    Table table{"columns", {{"number", "NR"}, {"name", "COLUMN"}, {"unit", "UNIT"}, {"type", "TYPE"}, {"rows", "ROWS"}, {"min", "MIN"}, {"max", "MAX"}, {"mean", "MEAN"}}, {},
        "the file has no columns", ""};
    for (std::size_t i = 0; i < data->getColmnCount(); ++i) {
        table.rows.push_back(describe(i + 1, *(*data)[i]));
    }
    const std::string kind = choice.file.substr(choice.file.rfind('.') + 1); // also of a file that is called ".csv"
    output.show({Fields{"", {{{"file", "File"}, choice.file}, {{"kind", "Kind"}, kind},
                                {{"bytes", "Size"}, bytes(brvUtils::fileSize(choice.file.c_str(), Utilities::Encoding::Mode::Utf8))},
                                {{"column_count", "Columns"}, data->getColmnCount()}, {{"rows", "Rows"}, data->getRowsCount()}}, ""},
        std::move(table)});
    return good;
}

Cell valueOf(const DataMatrix& data, std::size_t column, std::size_t row)
{
    int integer = 0;
    double number = 0.0;
    std::string text;
    if (row >= data[column]->size()) {
        return nullptr;
    }
    if (data[column]->getIntData() != nullptr && data.getData(column, row, integer)) {
        return integer;
    }
    return data.getData(column, row, number) ? Cell(number) : data.getData(column, row, text) ? Cell(text) : Cell(nullptr);
}

int head(const DataChoice& choice, Output& output)
{
    const auto data = choice.load();
    std::vector<std::size_t> columns;
    for (const std::string& name : choice.columns) {
        columns.push_back(columnOf(*data, name));
    }
    for (std::size_t i = 0; choice.columns.empty() && i < std::min(usualColumns, data->getColmnCount()); ++i) {
        columns.push_back(i);
    }
    Table table{"rows", {}, {}, "the file has no rows", ""};
    std::size_t rows = 0;
    for (const std::size_t column : columns) {
        table.columns.push_back({data->getDataName(column), data->getDataName(column)});
        rows = std::max(rows, (*data)[column]->size());
    }
    for (std::size_t row = 0; row < std::min(rows, choice.rows); ++row) {
        std::vector<Cell> cells;
        for (const std::size_t column : columns) {
            cells.push_back(valueOf(*data, column, row));
        }
        table.rows.push_back(std::move(cells));
    }
    const std::string shown = fmt::format("{} of {}", table.rows.size(), rows), among = fmt::format("{} of {}", columns.size(), data->getColmnCount());
    Fields fields{"", {{{"row_count", "Rows"}, {rows, shown}}, {{"column_count", "Columns"}, {data->getColmnCount(), among}}}, ""};
    output.show({std::move(table), std::move(fields)});
    return good;
}

std::vector<double> drawable(const DataMatrix& data, const std::string& name)
{
    std::vector<double> values = numbersOf(*data[columnOf(data, name)]);
    if (values.empty()) {
        throw Fault("the column \"" + name + "\" has no numbers to draw");
    }
    return values;
}

Plot plotOf(const DataChoice& choice)
{
    const auto data = choice.load();
    Plot plot;
    plot.over = choice.over.empty() ? "row" : data->getDataName(columnOf(*data, choice.over));
    plot.x = choice.over.empty() ? std::vector<double>() : drawable(*data, choice.over);
    for (const std::string& name : choice.columns) {
        plot.series.push_back({data->getDataName(columnOf(*data, name)), drawable(*data, name)});
        for (std::size_t row = plot.x.size(); choice.over.empty() && row < plot.series.back().values.size(); ++row) {
            plot.x.push_back(static_cast<double>(row));
        }
    }
    for (Plot::Series& series : plot.series) {
        series.values.resize(plot.x.size(), NAN);
    }
    return plot;
}

int plot(const DataChoice& choice, Output& output)
{
    const Plot plot = plotOf(choice);
    if (!choice.output.empty()) {
        drawFile(plot, choice.output);
        output.show({Fields{"", {{{"output", "Drawn to"}, choice.output}}, ""}});
        return good;
    }
    Json series = Json::array();
    for (const Plot::Series& each : plot.series) {
        Json points = Json::array();
        for (const Plot::Range& range : plot.ranges(each, output.width())) {
            points.push_back({{"x", range.x}, {"min", range.least}, {"max", range.most}});
        }
        series.push_back({{"name", each.name}, {"points", std::move(points)}});
    }
    output.show({Lines{"over", "", plot.over}, Lines{"series", drawText(plot, output.width()), std::move(series)}});
    return good;
}

} // namespace

void addData(Commands& commands)
{
    const auto choice = std::make_shared<DataChoice>();
    CLI::App& group = commands.addGroup({"data", "Looks into recorded data: .csv, .mat and .idc files", {"brv data info drive.csv", "brv data plot drive.csv speed"}});
    CLI::App& teller = commands.add(group, {"info", "Shows the columns of a file with their ranges", {"brv data info drive.csv", "brv data info drive.mat --json"},
                                              "Units are those in brackets behind a column's name."},
        [choice](Output& output) { return info(*choice, output); });
    CLI::App& header = commands.add(group, {"head", "Shows the first rows of a file", {"brv data head drive.csv", "brv data head drive.csv --rows 3 --columns time,speed"}},
        [choice](Output& output) { return head(*choice, output); });
    CLI::App& drawer = commands.add(group, {"plot", "Draws columns over the rows or over another column", {"brv data plot drive.csv speed", "brv data plot drive.csv speed acceleration --over time --output drive.svg"}},
        [choice](Output& output) { return plot(*choice, output); });
    for (CLI::App* const command : {&teller, &header, &drawer}) {
        command->add_option("FILE", choice->file, "The file, .csv, .mat or .idc")->required()->type_name("FILE");
        command->add_option("--separator", choice->separator, "Between the fields of a .csv file, or \"tab\"; by default what its first line suggests")->type_name("CHARACTER")
            ->check([](const std::string& text) { return text.size() == 1 || text == "tab" ? std::string() : "it is one character, or \"tab\""; });
    }
    header.add_option("--rows", choice->rows, "How many rows")->check(CLI::NonNegativeNumber)->capture_default_str()->type_name("COUNT");
    header.add_option("--columns", choice->columns, "Names or numbers of columns; by default the first eight")->delimiter(',')->type_name("NAMES");
    drawer.add_option("COLUMN", choice->columns, "Names or numbers of columns")->required()->type_name("NAME");
    drawer.add_option("--over", choice->over, "The column to draw them over, in place of the rows")->type_name("NAME");
    drawer.add_option("--output", choice->output, "Draws into a .svg or .png file, by gnuplot")->type_name("FILE");
}

} // namespace brvTool
