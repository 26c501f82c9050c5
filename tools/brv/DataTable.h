#pragma once

#include <brvUtils/data/DataMatrix.h>

#include <memory>
#include <string>
#include <vector>

namespace brvTool {

/// Loads recorded data. \param separator of CSV files; 0 takes the one that their first line suggests.
/// \throw Fault when the file is missing, of no known kind, or cannot be read.
std::unique_ptr<DataMatrix> loadData(const std::string& file, char separator);

/// The column of that name, or of that number from 1 on. \throw Fault when there is none.
std::size_t columnOf(const DataMatrix& data, const std::string& name);

/// "number", "integer" or "text"; empty for a column without values.
std::string typeOf(const DataMatrix::DataCol& column);

/// The values as numbers, NaN where there is none; empty for a column of texts.
std::vector<double> numbersOf(const DataMatrix::DataCol& column);

/// The unit that stands in brackets at the end of the name, or that the recordings of scanners have; else empty.
std::string unitOf(const std::string& name);

} // namespace brvTool
