#include "brvUtils/os/DumpFile.h"

#include "testing/TemporaryFolder.h"

#include <fstream>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/stat.h>

namespace {

namespace os = brvUtils::os;

template <typename Value>
Value valueAt(std::ifstream& file, std::uint64_t at)
{
    Value value{};
    file.seekg(static_cast<std::streamoff>(at));
    file.read(reinterpret_cast<char*>(&value), sizeof value);
    return value;
}

/// Where a full dump has the byte of that address; 0 when it has not.
std::uint64_t placeOf(std::uint64_t address, std::ifstream& dump)
{
    const auto streams = valueAt<std::uint32_t>(dump, 8);
    const auto directory = valueAt<std::uint32_t>(dump, 12);
    for (std::uint32_t stream = 0; stream < streams; ++stream) {
        if (valueAt<std::uint32_t>(dump, directory + stream * 12) != 9) {
            continue;
        }
        const auto list = valueAt<std::uint32_t>(dump, directory + stream * 12 + 8);
        std::uint64_t place = valueAt<std::uint64_t>(dump, list + 8);
        for (std::uint64_t range = 0; range < valueAt<std::uint64_t>(dump, list); ++range) {
            const auto start = valueAt<std::uint64_t>(dump, list + 16 + range * 16);
            const auto size = valueAt<std::uint64_t>(dump, list + 16 + range * 16 + 8);
            if (address >= start && address - start < size) {
                return place + (address - start);
            }
            place += size;
        }
    }
    return 0;
}

TEST(FullMemory, hasWhatIsWrittenInHugeReservedMemoryAndSoonComesToItsEnd)
{
    constexpr std::size_t size = std::size_t{1} << 40;
    void* const reserved = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (reserved == MAP_FAILED) {
        GTEST_SKIP() << "so much cannot be reserved here";
    }
    char* const written = static_cast<char*>(reserved) + size / 2 + 12'345;
    *written = 'w';
    const brvTesting::TemporaryFolder folder;
    const std::string file = folder.file("full.dmp");
    ASSERT_TRUE(os::writeDumpFile(file.c_str(), os::DumpContents::full, nullptr));
    struct stat status{};
    ASSERT_EQ(stat(file.c_str(), &status), 0);
    EXPECT_GT(static_cast<std::size_t>(status.st_size), size);
    EXPECT_LT(static_cast<std::size_t>(status.st_blocks) * 512, std::size_t{1} << 30);
    std::ifstream dump(file, std::ios::binary);
    const std::uint64_t place = placeOf(reinterpret_cast<std::uint64_t>(written), dump);
    ASSERT_NE(place, 0u);
    EXPECT_EQ(valueAt<char>(dump, place), 'w');
    EXPECT_EQ(valueAt<char>(dump, place + 1), '\0');
    munmap(reserved, size);
}

} // namespace
