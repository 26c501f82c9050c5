#pragma once

#include "brvUtils/data/DataMatrix.h"

/// A MAT file: each vector variable becomes a column of its name.
///
/// Doubles become doubles, 32-bit integers integers, of 64-bit integers the low 32 bits; of a text each character becomes a
/// text of its own. Of a matrix the first column is taken, of a text in one row that row. Variables of more than two
/// dimensions, unless the second one is 1, are left out.
class BRVUTILS_API MatDataFile : public DataMatrix
{
public:
    /// \param wantedColumns names of the variables to take; none stands for all.
    /// \return true; false when the progress function stopped the loading.
    /// \throw std::out_of_range "Error opening : <file>" when that failed, or "failed to find <variable> class type. The
    ///        Type is :<class>\n" for a variable of another class; what was read before stays. Where the library was built
    ///        without support of MAT files, each file is a failure to open that says so.
    bool load(std::string const& fileName, std::vector<std::string> const& wantedColumns) override;
};
