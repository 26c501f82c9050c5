#include "brvUtils/data/DataMatrix.h"

#include <limits>
#include <stdexcept>

DataMatrix::DataCol::~DataCol() = default;

DataMatrix::DataMatrix() = default;
DataMatrix::DataMatrix(DataMatrix const&) = default;
DataMatrix& DataMatrix::operator=(DataMatrix const&) = default;

DataMatrix::~DataMatrix()
{
    clear();
}

void DataMatrix::clear()
{
    for (DataCol* column : columns) {
        delete column;
    }
    columns.clear();
    columnIndex.clear();
}

void DataMatrix::setProgress(Progress progress)
{
    progress_ = std::move(progress);
}

std::string const& DataMatrix::getFileName() const
{
    return fileName;
}

size_t DataMatrix::getColmnCount() const
{
    return columns.size();
}

size_t DataMatrix::getRowsCount() const
{
    return columns.empty() ? 0 : columns.front()->size();
}

std::string const& DataMatrix::getDataName(size_t column) const
{
    return columns[column]->name;
}

bool DataMatrix::exists(std::string const& name) const
{
    return columnIndex.find(name) != columnIndex.end();
}

DataMatrix::DataCol const* DataMatrix::operator[](std::string const& name) const
{
    const auto found = columnIndex.find(name);
    if (found == columnIndex.end()) {
        throw std::out_of_range("Can't find " + name);
    }
    return found->second.column;
}

DataMatrix::DataCol const* DataMatrix::operator[](size_t const& column) const
{
    return columns[column];
}

bool DataMatrix::getData(size_t column, size_t row, double& out) const
{
    return has(column, row) && columns[column]->getData(row, out);
}

bool DataMatrix::getData(size_t column, size_t row, int& out) const
{
    return has(column, row) && columns[column]->getData(row, out);
}

bool DataMatrix::getData(size_t column, size_t row, std::string& out) const
{
    return has(column, row) && columns[column]->getData(row, out);
}

bool DataMatrix::has(size_t column, size_t row) const
{
    return column < columns.size() && row < columns[column]->size();
}

bool DataMatrix::report(uint64_t done, uint64_t total) const
{
    return !progress_ || progress_(done, total);
}

void DataMatrix::enter(std::unique_ptr<DataCol> column)
{
    columns.push_back(column.get()); // room for one more at a time would cost a copy of all columns each
    const DataCol& entered = *column.release();
    columnIndex[entered.name] = {columns.back(), columns.size() - 1};
}

int DataMatrix::toInt(double value)
{
    using Limits = std::numeric_limits<int>;
    if (value >= Limits::min() && value <= Limits::max()) {
        return static_cast<int>(value);
    }
    return value > 0.0 ? Limits::max() : value < 0.0 ? Limits::min() : 0;
}
