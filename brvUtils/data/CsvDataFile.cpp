#include "brvUtils/data/CsvDataFile.h"

#include "brvUtils/data/internal/CsvHeader.h"
#include "brvUtils/data/internal/CsvLoader.h"

#include <algorithm>

using namespace brvUtils;
using csv::Kind;

namespace {

constexpr uint64_t reportEvery = 4 * 1024 * 1024; // bytes

/// How many values a column gets that has `size` when `done` bytes of `total` are read. Room that is never used costs nothing,
/// but what one part of a file foretells of the next is taken with care.
size_t expectedSize(size_t size, uint64_t done, uint64_t total)
{
    const double expected = static_cast<double>(size) * (static_cast<double>(total) / static_cast<double>(done)) * 1.02;
    return static_cast<size_t>(std::clamp(expected, static_cast<double>(size) * 1.125, static_cast<double>(size) * 8.0)) + 1;
}

template <typename Stored, typename Value>
void appendValues(const csv::Column& from, std::vector<Value>& to, uint64_t done, uint64_t total)
{
    const auto* const begin = from.begin<Stored>();
    const auto* const end = from.end<Stored>();
    const size_t size = to.size() + static_cast<size_t>(end - begin);
    if (size > to.capacity()) {
        to.reserve(expectedSize(size, done, total));
    }
    to.insert(to.end(), begin, end);
}

void appendValues(const csv::Column& from, DataMatrix::DataCol& to, uint64_t done, uint64_t total)
{
    switch (from.kind) {
    case Kind::integer: appendValues<int32_t>(from, static_cast<DataMatrix::IntDataCol&>(to).values, done, total); break;
    case Kind::number: appendValues<double>(from, static_cast<DataMatrix::DoubleDataCol&>(to).values, done, total); break;
    default: appendValues<std::string_view>(from, static_cast<DataMatrix::StringDataCol&>(to).values, done, total); break;
    }
}

Kind kindOfNumbers(CsvDataFile::TypeForced force)
{
    switch (force) {
    case CsvDataFile::FORCE_NONE:
    case CsvDataFile::FORCE_INT: return Kind::integer;
    case CsvDataFile::FORCE_DOUBLE: return Kind::number;
    default: return Kind::text;
    }
}

} // namespace

CsvDataFile::CsvDataFile(char columnSeparator, TypeForced force)
    : separator(columnSeparator)
    , typeForced(force)
{
}

bool CsvDataFile::load(std::string const& path, std::vector<std::string> const& wantedColumns)
{
    fileName = path;
    os::InputFile file;
    if (file.open(path) != os::error::none) {
        return false;
    }
    clear();

    const uint64_t total = file.size();
    csv::Header header;
    if (!header.read(file, [&](uint64_t done) { return report(done, total); })) {
        return false;
    }
    csv::Table table {separator, kindOfNumbers(typeForced), {}, {}};
    header.split(table, wantedColumns);

    const auto create = [this](Kind kind, const std::string& name) {
        switch (kind) {
        case Kind::integer: append<int>(name); break;
        case Kind::number: append<double>(name); break;
        default: append<std::string>(name); break;
        }
    };
    const auto take = [&](const csv::Block& block, uint64_t done) {
        size_t place = 0;
        for (size_t i = 0; i < block.reached(); ++i) {
            const csv::Column& values = block.columns()[i];
            if (values.kind == Kind::unwanted) {
                continue;
            }
            if (place == columns.size()) {
                create(values.kind, std::string(table.names[i]));
            }
            appendValues(values, *columns[place++], done, total);
        }
    };

    csv::Loader loader(file, table, header.length());
    uint64_t reported = 0;
    return loader.run([&](const csv::Block& block, uint64_t done) {
        take(block, done);
        if (done - reported < reportEvery) {
            return true;
        }
        reported = done;
        return report(done, total);
    }) && report(total, total);
}
