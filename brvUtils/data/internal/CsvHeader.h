#pragma once

#include "brvUtils/data/internal/CsvColumn.h"
#include "brvUtils/os/InputFile.h"

#include <cstdint>
#include <functional>

namespace brvUtils::csv {

/// The first line of a file.
class Header
{
public:
    /// Told how many bytes are read; false stops.
    using Progress = std::function<bool(std::uint64_t done)>;

    /// \return false when it was stopped.
    bool read(const os::InputFile& file, const Progress& progress);

    /// Bytes of the file up to where the next line begins.
    std::uint64_t length() const { return length_; }

    /// Gives the table its columns, up to the last wanted one; none stands for all. Their names lie in this object.
    void split(Table& table, const std::vector<std::string>& wanted) const;

private:
    std::string line_;
    std::uint64_t length_ = 0;
};

} // namespace brvUtils::csv
