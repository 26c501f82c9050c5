#include "brvUtils/platform/RFileVersionInfo.h"

#include "testing/TemporaryFolder.h"

#include <stdexcept>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const brvTesting::TemporaryFolder folder;
    std::filesystem::remove(folder.path() / "fuzz.dll"); // some file systems write a file to the disk that is cut and filled
    const std::string path = folder.write("fuzz.dll", std::string(reinterpret_cast<const char*>(data), size));
    try {
        brvUtils::RFileVersionInfo(path).key();
    } catch (const std::invalid_argument&) {
        // has none that can be read
    }
    return 0;
}
