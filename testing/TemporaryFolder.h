#pragma once

#include <filesystem>
#include <string>

namespace brvTesting {

/// An empty folder of its own in the system's folder for temporary files, removed with all it holds by the destructor.
class TemporaryFolder
{
public:
    explicit TemporaryFolder(const std::string& stem = "brv-test");
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }
    /// The path of a file in the folder, which need not exist; UTF-8. The folder's own without a name.
    std::string file(const std::string& name = "") const;
    /// Writes a file byte by byte as given, making the folders that its name (with `/`) asks for. Gives its path, UTF-8.
    std::string write(const std::string& name, const std::string& content) const;
    /// The bytes of a file in the folder; the test fails when it cannot be read.
    std::string read(const std::string& name) const;

private:
    std::filesystem::path path_;
};

} // namespace brvTesting
