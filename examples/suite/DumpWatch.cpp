#include "DumpWatch.h"

#include "Variables.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <system_error>

namespace fs = std::filesystem;

namespace suite {

namespace {

/// As a process has it that is started with these variables.
std::optional<std::string> valueFor(const std::vector<EnvironmentVariable>& variables, const std::string& name)
{
    const auto set = std::find_if(variables.rbegin(), variables.rend(), [&](const auto& variable) { return variable.first == name; });
    return set != variables.rend() ? set->second : getVariable(name);
}

fs::path dumpRoot(const std::vector<EnvironmentVariable>& variables)
{
    if (const auto root = valueFor(variables, "STUDIO_DUMP_DIR")) {
        return fs::u8path(*root);
    }
    std::optional<std::string> temporary;
    for (const std::string& name : temporaryVariables) {
        temporary = temporary ? temporary : valueFor(variables, name);
    }
    return fs::u8path(temporary.value_or(temporaryFolder)) / "STUDIO_Dumps";
}

/// What there is in a folder, nothing when it cannot be read.
std::vector<fs::path> entriesOf(const fs::path& folder)
{
    std::vector<fs::path> entries;
    std::error_code fault;
    for (fs::directory_iterator entry(folder, fault), end; !fault && entry != end; entry.increment(fault)) {
        entries.push_back(entry->path());
    }
    return entries;
}

/// Whether the name of a dump, ..._DD_MM_YYYY-HH_MM_SS_PROCESS_MACHINE_USER_VERSION.dmp, has that process.
bool isNameOf(const std::string& dump, std::uint32_t process)
{
    constexpr std::string_view time = "_00_00_0000-00_00_00_"; // in which a 0 is any digit
    const auto like = [](char character, char model) {
        return model == '0' ? character >= '0' && character <= '9' : character == model;
    };
    const std::string number = std::to_string(process) + '_';
    auto found = dump.begin();
    while ((found = std::search(found, dump.end(), time.begin(), time.end(), like)) != dump.end()) {
        if (dump.compare(static_cast<std::size_t>(found - dump.begin()) + time.size(), number.size(), number) == 0) {
            return true;
        }
        ++found;
    }
    return false;
}

fs::file_time_type timeOf(const fs::path& file)
{
    std::error_code fault;
    const auto time = fs::last_write_time(file, fault);
    return fault ? fs::file_time_type::min() : time;
}

} // namespace

DumpWatch::DumpWatch(const std::string& program, const std::vector<EnvironmentVariable>& variables)
    : root_(dumpRoot(variables))
    , program_(fs::u8path(program).filename())
{
    const auto found = dumps();
    known_ = {found.begin(), found.end()};
}

std::vector<fs::path> DumpWatch::dumps() const
{
    std::vector<fs::path> found;
    for (const fs::path& version : entriesOf(root_)) {
        for (const fs::path& file : entriesOf(version / program_)) {
            if (file.extension() == ".dmp") {
                found.push_back(file);
            }
        }
    }
    return found;
}

std::string DumpWatch::dumpOf(std::uint32_t process) const
{
    fs::path newest;
    for (const fs::path& file : dumps()) {
        if (known_.count(file) == 0 && isNameOf(file.filename().u8string(), process)
            && (newest.empty() || timeOf(file) > timeOf(newest))) {
            newest = file;
        }
    }
    return newest.u8string();
}

} // namespace suite
