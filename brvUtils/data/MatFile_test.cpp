#include "brvUtils/data/MatFile_test.h"

#include <cstdlib>
#include <iostream>

namespace matTests {

namespace {

void require(bool success, const char* what)
{
    if (!success) {
        std::cerr << "matio cannot write " << what << '\n';
        std::abort();
    }
}

} // namespace

MatFile::MatFile(const std::string& path, mat_ft version, matio_compression compression)
    : file_(Mat_CreateVer(path.c_str(), nullptr, version))
    , compression_(compression)
{
    require(file_ != nullptr, path.c_str());
}

MatFile::~MatFile()
{
    Mat_Close(file_);
}

void MatFile::add(
    const char* name, matio_classes kind, matio_types type, std::vector<std::size_t> dimensions, const void* values, int flags)
{
    matvar_t* const made = Mat_VarCreate(name, kind, type, static_cast<int>(dimensions.size()), dimensions.data(),
        const_cast<void*>(values), flags); // copied
    require(made != nullptr && Mat_VarWrite(file_, made, compression_) == 0, name);
    Mat_VarFree(made);
}

void MatFile::add(const char* name, const std::vector<double>& values)
{
    add(name, MAT_C_DOUBLE, MAT_T_DOUBLE, {values.size(), 1}, values.data());
}

void MatFile::add(const char* name, const std::vector<std::int32_t>& values)
{
    add(name, MAT_C_INT32, MAT_T_INT32, {values.size(), 1}, values.data());
}

void MatFile::add(const char* name, const std::string& text)
{
    add(name, MAT_C_CHAR, MAT_T_UINT8, {1, text.size()}, text.data());
}

std::string element(std::uint32_t type, const std::string& content)
{
    const std::string padding((8 - content.size() % 8) % 8, '\0');
    return bytesOf<std::uint32_t>({type, static_cast<std::uint32_t>(content.size())}) + content + padding;
}

std::string mat5(const std::string& elements)
{
    std::string header = "MATLAB 5.0 MAT-file, made by a test";
    header.resize(124, ' ');
    return header + bytesOf<std::uint16_t>({0x0100, 0x4D49}) + elements;
}

std::string variable(const std::string& name, std::uint32_t kind, const std::vector<std::int32_t>& dimensions, const std::string& values)
{
    return element(MAT_T_MATRIX,
        element(MAT_T_UINT32, bytesOf<std::uint32_t>({kind, 0})) + element(MAT_T_INT32, bytesOf(dimensions)) + element(MAT_T_INT8, name)
            + values);
}

} // namespace matTests
