#pragma once

#include <string>
#include <vector>

#include "brvUtils/export.h"

/// \file
/// Common look-ups of files by way of the configuration (EnvConfig.h, whose errors pass through). Any thread; all texts
/// are UTF-8.

namespace brvUtils {

/// The file `folderPart` + `filePart` of a vehicle model: the first that exists in the folders of the keyword
/// "data/vehicle/<model>/data", or else where the first of them would have it. Loads the list of configurations and
/// selects the first one when that was not done.
BRVUTILS_API std::string buildVehicleModelConfigurationFile(const std::string& model, const std::string& folderPart, const std::string& filePart);

/// The file `folderPart` + `filePart` in the folders of the keyword "data/<subPath>"; empty when none holds it.
BRVUTILS_API std::string buildAbsoluteFileName(const std::string& subPath, const std::string& folderPart, const std::string& filePart);

/// The same, stored in `result`. \return whether it is a regular file.
BRVUTILS_API bool buildAbsoluteFileName(const std::string& subPath, const std::string& folderPart, const std::string& filePart, std::string& result);

/// Which of several formats of a data file to load. A path that names an existing file comes back unchanged. Otherwise it
/// is a name without extension: the newest of the files that it makes with one of the extensions `formats` (dots
/// included), the later in the list of equally new ones, and the last of the list when there is none. Files ".opt5.osgb"
/// are looked for in the user's local folder (getVeloraLocalFolderPath) where there is one. Without formats, the path
/// without its extensions is tried in the same way; empty when that fails too.
BRVUTILS_API std::string getFileWithFormatInformation(const std::string& path, const std::vector<std::string>& formats);

/// Key of the shared memory of the user's daemon for the selected configuration: "DAEMON-<configuration>-<user>".
BRVUTILS_API std::string getDaemonShmKey();

} // namespace brvUtils
