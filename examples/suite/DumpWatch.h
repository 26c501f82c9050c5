#pragma once

#include "Process.h"

#include <filesystem>
#include <set>
#include <string>
#include <vector>

namespace suite {

/// Looks for the dump of a process that crashed: such a process ends with code 0, as one that did its work. One thread at a time.
class DumpWatch
{
public:
    DumpWatch() = default;

    /// From now on: dumps that are there already are no news, numbers of processes come again.
    /// \param program path of the process's executable. \param variables it is started with, see Process.
    DumpWatch(const std::string& program, const std::vector<EnvironmentVariable>& variables);

    /// The path of the newest dump of the process with that number, UTF-8; empty when there is none.
    std::string dumpOf(std::uint32_t process) const;

private:
    std::vector<std::filesystem::path> dumps() const;

    std::filesystem::path root_; ///< Of all dumps.
    std::filesystem::path program_; ///< File name: that of a folder of dumps.
    std::set<std::filesystem::path> known_;
};

} // namespace suite
