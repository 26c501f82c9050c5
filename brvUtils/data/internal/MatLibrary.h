#pragma once

#include <cstdint>
#include <string>
#include <vector>

// What reads MAT files is a library of its own, loaded with the first of them: matio brings dozens of other libraries along,
// and to load these takes longer than all else that a module does before it can exchange data.

namespace brvUtils {

/// Takes what a MAT file holds.
class MatColumns
{
public:
    /// The file was opened: what was there before is dropped.
    virtual void begin() = 0;
    virtual void add(const std::string& name, std::vector<double>&& values) = 0;
    virtual void add(const std::string& name, std::vector<int>&& values) = 0;
    virtual void add(const std::string& name, std::vector<std::string>&& values) = 0;
    /// False when the loading is to stop.
    virtual bool report(std::uint64_t done, std::uint64_t total) = 0;

protected:
    ~MatColumns() = default;
};

/// What the library exports: reads a file as MatDataFile::load says.
extern "C" using LoadMatFile = bool(const std::string& path, const std::vector<std::string>& wantedColumns, MatColumns& columns);
constexpr const char* loadMatFileName = "brvLoadMatFile";

} // namespace brvUtils
