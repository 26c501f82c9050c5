#include "brvUtils/startup/DataLookup.h"

#include "brvUtils/core/FileNames.h"
#include "brvUtils/core/FileSystem.h"
#include "brvUtils/startup/EnvConfig.h"
#include "brvUtils/startup/GenericPath.h"

#include <Utilities/System.h>

#include <cstdint>

namespace brvUtils {

namespace {

constexpr auto utf8 = Utilities::Encoding::Mode::Utf8;

/// Where the format of that data file lies.
std::string candidate(const std::string& path, const std::string& localFolder, const std::string& format)
{
    // Converted when it is first needed, and so not kept beside the source, which others may own.
    if (format != ".opt5.osgb" || localFolder.empty()) {
        return path + format;
    }
    std::string name = fileName(path);
    removeExtension(name);
    return localFolder + "/" + name + format;
}

} // namespace

std::string buildVehicleModelConfigurationFile(const std::string& model, const std::string& folderPart, const std::string& filePart)
{
    EnvConfig environment;
    EnvConfig::matchComputer();
    const std::string keyword = "data/vehicle/" + model + "/data";
    const std::string found = EnvConfig::findInPath(keyword, folderPart + filePart);
    return !found.empty() ? found : environment[keyword + "/" + folderPart + filePart];
}

std::string buildAbsoluteFileName(const std::string& subPath, const std::string& folderPart, const std::string& filePart)
{
    EnvConfig::matchComputer();
    return EnvConfig::findInPath("data/" + subPath, folderPart + filePart);
}

bool buildAbsoluteFileName(const std::string& subPath, const std::string& folderPart, const std::string& filePart, std::string& result)
{
    result = buildAbsoluteFileName(subPath, folderPart, filePart);
    return fileExist(result, utf8);
}

std::string getFileWithFormatInformation(const std::string& path, const std::vector<std::string>& formats)
{
    const std::string name = fileName(path);
    const bool hasExtension = name.find('.') != std::string::npos;
    if (hasExtension && fileExist(path, utf8)) {
        return path;
    }
    const std::string folder = name.size() == path.size() ? "." : getPath(path);
    const std::string localFolder = getVeloraLocalFolderPath(EnvConfig::transformInGenericPath(folder, true));
    std::string best;
    std::int64_t bestTime = 0;
    for (const std::string& format : formats) {
        const std::string file = candidate(path, localFolder, format);
        // Kept for callers: a missing file has the time 0 and counts, so that without any file the last format is it.
        if (const std::int64_t time = getModificationTime(file.c_str(), utf8); time >= bestTime) {
            best = file;
            bestTime = time;
        }
    }
    if (best.empty() && hasExtension) {
        return getFileWithFormatInformation(path.substr(0, path.rfind('.')), formats);
    }
    return best;
}

std::string getDaemonShmKey()
{
    return "DAEMON-" + EnvConfig::getCurrentConfiguration() + "-" + Utilities::System::GetEffectiveUserName();
}

} // namespace brvUtils
