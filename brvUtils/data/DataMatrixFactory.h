#pragma once

#include "brvUtils/data/CsvDataFile.h"

/// Makes readers of recorded data.
class BRVUTILS_API DataMatrixFactory
{
public:
    /// The reader for a file, by the extension of its name alone: ".csv", ".mat" or ".idc", in small letters. It has loaded
    /// nothing yet.
    /// \param fileName UTF-8. \param separator, typeForced of CsvDataFile.
    /// \return owned by the caller; null for any other extension.
    static DataMatrix* create(std::string const& fileName, char separator, CsvDataFile::TypeForced typeForced);
};
