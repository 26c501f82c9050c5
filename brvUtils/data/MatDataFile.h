#pragma once

#include "brvUtils/data/DataMatrix.h"

/// A MAT file of version 4, 5 or 7.3: each vector variable becomes a column of its name.
///
/// Doubles become doubles (of complex ones the real part is taken), 32-bit integers integers, of 64-bit integers the low 32
/// bits; of a text each character becomes a text of its own, in UTF-8. Bytes of a text that are no UTF-8 stay as they are.
/// Of a matrix the first column is taken, of a text in one row that row. Variables of more than two dimensions, unless the
/// second one is 1, are left out, and so are damaged ones: what they claim to hold is never believed beyond what the file has
/// room for. MAT files are loaded one at a time in a process; other threads wait. The first one takes some milliseconds
/// more, in which what reads them is loaded.
class BRVUTILS_API MatDataFile : public DataMatrix
{
public:
    /// Fills the table. Where the file cannot be opened it stays as it is.
    /// \param fileName UTF-8.
    /// \param wantedColumns names of the variables to take; none stands for all.
    /// \return true; false when the progress function stopped the loading.
    /// \throw std::out_of_range "Error opening : <file>" when that failed, or "failed to find <variable> class type. The
    ///        Type is :<class>\n" for a variable of another class; what was read before stays. Where the library was built
    ///        without support of MAT files, or the library that reads them does not lie beside it, each file is a failure to
    ///        open that says so.
    bool load(std::string const& fileName, std::vector<std::string> const& wantedColumns) override;
};
