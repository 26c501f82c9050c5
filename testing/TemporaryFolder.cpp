#include "testing/TemporaryFolder.h"

#include "testing/UniqueName.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace brvTesting {

namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder(const std::string& stem) : path_(fs::temp_directory_path() / fs::u8path(uniqueName(stem)))
{
    fs::create_directory(path_);
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored; // On Windows a file may still be open.
    fs::remove_all(path_, ignored);
}

std::string TemporaryFolder::file(const std::string& name) const
{
    return (name.empty() ? path_ : path_ / fs::u8path(name)).u8string();
}

std::string TemporaryFolder::write(const std::string& name, const std::string& content) const
{
    const fs::path file = path_ / fs::u8path(name);
    fs::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << content;
    return file.u8string();
}

std::string TemporaryFolder::read(const std::string& name) const
{
    std::ifstream stream(path_ / fs::u8path(name), std::ios::binary);
    EXPECT_TRUE(stream.is_open()) << file(name);
    return std::string(std::istreambuf_iterator<char>(stream), {});
}

} // namespace brvTesting
