#pragma once

#include "testing/UniqueName.h"

#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <utility>

namespace brvTesting {

namespace fs = std::filesystem;

/// A name space of this test's own; removed at the end.
class NameSpace
{
public:
    explicit NameSpace(fs::path folder = "/dev/shm/" + uniqueName("brv"))
        : folder_(std::move(folder))
    {
        setenv("STUDIO_IPC_NAMESPACE", folder_.c_str(), 1);
    }
    ~NameSpace()
    {
        unsetenv("STUDIO_IPC_NAMESPACE");
        fs::remove_all(folder_);
    }

    fs::path table() const { return folder_ / "brvUtils-table"; }
    std::ptrdiff_t files() const { return fs::exists(folder_) ? std::distance(fs::directory_iterator(folder_), {}) : 0; }

private:
    fs::path folder_;
};

} // namespace brvTesting
