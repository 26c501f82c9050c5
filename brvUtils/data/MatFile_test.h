#pragma once

#include <matio.h>

#include <cstdint>
#include <string>
#include <vector>

namespace matTests {

/// A file that is written by matio. What fails ends the process.
class MatFile
{
public:
    explicit MatFile(const std::string& path, mat_ft version = MAT_FT_MAT5, matio_compression compression = MAT_COMPRESSION_NONE);
    ~MatFile();
    MatFile(const MatFile&) = delete;
    MatFile& operator=(const MatFile&) = delete;

    /// A variable of any kind; `flags` are matio_flags.
    void add(const char* name, matio_classes kind, matio_types type, std::vector<std::size_t> dimensions, const void* values, int flags = 0);

    /// Column vectors, and a text in one row.
    void add(const char* name, const std::vector<double>& values);
    void add(const char* name, const std::vector<std::int32_t>& values);
    void add(const char* name, const std::string& text);

private:
    mat_t* file_;
    matio_compression compression_;
};

/// The bytes of an element of a MAT 5 file: a tag and the content, filled up to 8 bytes.
std::string element(std::uint32_t type, const std::string& content);

/// A MAT 5 file of such elements.
std::string mat5(const std::string& elements);

/// An uncompressed variable, byte for byte. `values` are elements of their own; `kind` is a matio_classes and may have flags
/// of 256 and above.
std::string variable(const std::string& name, std::uint32_t kind, const std::vector<std::int32_t>& dimensions, const std::string& values);

/// The bytes of values in the order of this computer.
template <typename Value>
std::string bytesOf(const std::vector<Value>& values)
{
    return std::string(reinterpret_cast<const char*>(values.data()), values.size() * sizeof(Value));
}

} // namespace matTests
