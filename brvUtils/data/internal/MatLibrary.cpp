#include "brvUtils/data/internal/MatLibrary.h"

#include "brvUtils/data/internal/MatText.h"
#include "brvUtils/data/internal/MatVariables.h"
#include "brvUtils/export.h"

#include <algorithm>
#include <stdexcept>

namespace {

using brvUtils::MatVariables;

bool isWanted(std::vector<std::string> const& wantedColumns, const std::string& name)
{
    return wantedColumns.empty() || std::find(wantedColumns.begin(), wantedColumns.end(), name) != wantedColumns.end();
}

bool hasShapeOfColumns(const matvar_t& variable)
{
    return variable.dims != nullptr && (variable.rank == 2 || (variable.rank > 2 && variable.dims[1] == 1));
}

bool readTexts(MatVariables& file, matvar_t& variable, std::vector<std::string>& texts)
{
    std::size_t count = MatVariables::rowsOf(variable);
    if (count == 1 && variable.rank == 2) {
        count = variable.dims[1];
    }
    if (count == 0) {
        return true;
    }
    if (variable.isComplex || !file.readAll(variable)) {
        return false;
    }
    if (variable.data_size == 2) {
        texts = brvUtils::charactersOf(static_cast<const std::uint16_t*>(variable.data), variable.nbytes / 2, count);
    } else if (variable.data_size == 1) {
        texts = brvUtils::charactersOf(static_cast<const char*>(variable.data), variable.nbytes, count);
    }
    return variable.data_size == 1 || variable.data_size == 2;
}

bool readLowHalves(MatVariables& file, matvar_t& variable, std::vector<int>& values)
{
    std::vector<std::int64_t> wide;
    const bool read = file.read(variable, MatVariables::rowsOf(variable), wide);
    values.resize(wide.size());
    std::transform(wide.begin(), wide.end(), values.begin(),
        [](std::int64_t value) { return static_cast<int>(static_cast<std::uint32_t>(value)); });
    return read;
}

template <typename Value>
bool readNumbers(MatVariables& file, matvar_t& variable, std::vector<Value>& values)
{
    return file.read(variable, MatVariables::rowsOf(variable), values);
}

} // namespace

extern "C" BRVUTILS_API brvUtils::LoadMatFile brvLoadMatFile;

bool brvLoadMatFile(const std::string& path, const std::vector<std::string>& wantedColumns, brvUtils::MatColumns& columns)
{
    MatVariables file(path);
    if (!file.isOpen()) {
        throw std::out_of_range("Error opening : " + path);
    }
    columns.begin();
    std::uint64_t done = 0;
    while (const brvUtils::MatVariable variable = file.next()) {
        if (variable->name == nullptr || !isWanted(wantedColumns, variable->name) || !hasShapeOfColumns(*variable)) {
            continue;
        }
        const auto take = [&](auto values, bool (*read)(MatVariables&, matvar_t&, decltype(values)&)) {
            using Value = typename decltype(values)::value_type;
            if (read(file, *variable, values)) {
                columns.add(variable->name, std::move(values));
                done += file.elementsOf(*variable) * sizeof(Value);
            }
        };
        switch (variable->class_type) {
        case MAT_C_DOUBLE: take(std::vector<double>(), readNumbers<double>); break;
        case MAT_C_INT32: take(std::vector<int>(), readNumbers<int>); break;
        case MAT_C_INT64: take(std::vector<int>(), readLowHalves); break;
        case MAT_C_CHAR: take(std::vector<std::string>(), readTexts); break;
        default:
            throw std::out_of_range(std::string("failed to find ") + variable->name + " class type. The Type is :"
                + std::to_string(static_cast<int>(variable->class_type)) + "\n");
        }
        if (!columns.report(std::min(done, file.size()), file.size())) {
            return false;
        }
    }
    return columns.report(file.size(), file.size());
}
