#include "brvUtils/data/CsvDataFile.h"

#include "brvUtils/data/internal/CsvTuning.h"
#include "testing/TemporaryFolder.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

/// All values, one behind the other.
std::string loaded(const std::string& path, char separator, int force)
{
    CsvDataFile file(separator, static_cast<CsvDataFile::TypeForced>(force));
    file.load(path, {});
    std::string all;
    for (std::size_t i = 0; i < file.getColmnCount(); ++i) {
        const std::size_t size = file[i]->size();
        all += file.getDataName(i) + '\n';
        if (const int* integers = file[i]->getIntData()) {
            all.append(reinterpret_cast<const char*>(integers), size * sizeof *integers);
        } else if (const double* doubles = file[i]->getDoubleData()) {
            all.append(reinterpret_cast<const char*>(doubles), size * sizeof *doubles);
        }
        for (std::size_t row = 0; file[i]->getStringData() != nullptr && row < size; ++row) {
            all += file[i]->getStringData()[row] + '\n';
        }
    }
    return all;
}

} // namespace

/// Three bytes say how the rest is read: the separator, the type that is forced, the size of blocks. In blocks that several
/// threads share the file gives the same as in one.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 3) {
        return 0;
    }
    static const brvTesting::TemporaryFolder folder;
    const std::string path = folder.write("fuzz.csv", std::string(reinterpret_cast<const char*>(data + 3), size - 3));
    const char separator = static_cast<char>(data[0]);
    const int force = data[1] % 4 - 1;
    const std::string whole = loaded(path, separator, force);
    brvUtils::csv::tuning() = {1u + data[2] % 3, 1u + data[2] / 3};
    const std::string shared = loaded(path, separator, force);
    brvUtils::csv::tuning() = {};
    if (shared != whole) {
        std::fputs("the same file gives other values in other blocks\n", stderr);
        std::abort();
    }
    return 0;
}
