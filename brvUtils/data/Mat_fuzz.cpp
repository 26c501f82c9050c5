#include "brvUtils/data/MatDataFile.h"

#include "testing/TemporaryFolder.h"

#include <stdexcept>
#include <string_view>

/// What matio itself does not free after it met damage.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions()
{
    return "leak:libmatio";
}

namespace {

/// Of version 7.3 what reads it for matio has faults of its own, which would be all that is found.
bool isReadByHdf5(std::string_view file)
{
    using namespace std::string_view_literals;
    const std::string_view version = file.size() < 128 ? ""sv : file.substr(124, 4);
    return version == "\0\2IM"sv || version == "\2\0MI"sv;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string file(reinterpret_cast<const char*>(data), size);
    if (isReadByHdf5(file)) {
        return 0;
    }
    static const brvTesting::TemporaryFolder folder;
    std::filesystem::remove(folder.path() / "fuzz.mat"); // some file systems write a file to the disk that is cut and filled
    const std::string path = folder.write("fuzz.mat", file);
    MatDataFile matrix;
    try {
        matrix.load(path, {});
    } catch (const std::out_of_range&) {
        // not opened, or a variable of another class
    }
    return 0;
}
