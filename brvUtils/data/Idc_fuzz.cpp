#include "brvUtils/data/IdcDataFile.h"

#include "testing/TemporaryFolder.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const brvTesting::TemporaryFolder folder;
    std::filesystem::remove(folder.path() / "fuzz.idc"); // some file systems write a file to the disk that is cut and filled
    const std::string path = folder.write("fuzz.idc", std::string(reinterpret_cast<const char*>(data), size));
    IdcDataFile().load(path, {"Time", "EGO_SwAngle", "EGO_SwRotSpeed", "EGO_longSpeed", "EGO_latAccel", "EGO_longAccel",
        "EGO_latGPS", "EGO_longGPS", "EGO_GPSdirection"});
    return 0;
}
