#include "rfm2g/RingPlace.h"

#include <algorithm>
#include <filesystem>

namespace softwareCard {

namespace {

// With names of their own the files are none of the devices that Windows sees in every folder.
const std::string fileStart = "ring-";
const std::string fileEnd = ".mem";

std::filesystem::path folderOf(const std::string& folder)
{
    return std::filesystem::u8path(folder.empty() ? defaultFolder() : folder);
}

} // namespace

bool isRingName(const std::string& name)
{
    const auto allowed = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '.' || c == '_' || c == '-';
    };
    return !name.empty() && name.size() <= 64 && std::all_of(name.begin(), name.end(), allowed);
}

std::string ringPath(const RingPlace& place)
{
    return (folderOf(place.folder) / (fileStart + place.ring + fileEnd)).u8string();
}

std::vector<std::string> ringNames(const std::string& folder)
{
    std::vector<std::string> names;
    std::error_code error;
    for (std::filesystem::directory_iterator file(folderOf(folder), error), end; !error && file != end; file.increment(error)) {
        const std::string name = file->path().filename().u8string();
        if (name.size() > fileStart.size() + fileEnd.size() && name.compare(0, fileStart.size(), fileStart) == 0
            && name.compare(name.size() - fileEnd.size(), fileEnd.size(), fileEnd) == 0) {
            names.push_back(name.substr(fileStart.size(), name.size() - fileStart.size() - fileEnd.size()));
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace softwareCard
