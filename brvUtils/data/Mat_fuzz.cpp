#include "brvUtils/data/MatDataFile.h"

#include "testing/TemporaryFolder.h"

#include <stdexcept>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const brvTesting::TemporaryFolder folder;
    std::filesystem::remove(folder.path() / "fuzz.mat"); // some file systems write a file to the disk that is cut and filled
    const std::string path = folder.write("fuzz.mat", std::string(reinterpret_cast<const char*>(data), size));
    MatDataFile matrix;
    try {
        matrix.load(path, {});
    } catch (const std::out_of_range&) {
        // not opened, or a variable of another class
    }
    return 0;
}
