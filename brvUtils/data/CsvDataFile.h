#pragma once

#include "brvUtils/data/DataMatrix.h"

/// A text table: the first line holds the names of the columns, each further line one row.
///
/// A column has the type of its first value. Values of another type are lost, so that columns may differ in length. Lines
/// end in LF or CRLF, the last one with or without. An empty line is no row, fields beyond the names are ignored, an empty
/// field is an empty text, a byte-order mark is passed over.
class BRVUTILS_API CsvDataFile : public DataMatrix
{
public:
    /// What a field is taken for.
    enum TypeForced : int32_t {
        FORCE_NONE = -1, ///< An integer if it begins with one (of 12.75 that is 12), otherwise a text.
        FORCE_INT = 0, ///< The same.
        FORCE_DOUBLE = 1, ///< A double if it begins with a number, otherwise a text.
        FORCE_STRING = 2 ///< A text, as it is.
    };

    /// An empty table.
    /// \param separator between fields. \param typeForced values that are not listed are the same as FORCE_STRING.
    CsvDataFile(char separator, TypeForced typeForced);

    /// Fills the table. Where the file cannot be opened it stays as it is.
    ///
    /// Integers are parsed as by strtol and clamped to 32 bits, doubles as by strtod, the locale playing no part.
    ///
    /// Large files are parsed by several threads, to the same result.
    /// \param fileName UTF-8.
    /// \param wantedColumns names of the columns to take; none stands for all.
    /// \return false when the file cannot be opened, or the progress function stopped the loading. Malformed values are no
    ///         failure.
    bool load(std::string const& fileName, std::vector<std::string> const& wantedColumns) override;

private:
    char separator;
    TypeForced typeForced;
};
