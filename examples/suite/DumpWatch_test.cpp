#include "DumpWatch.h"

#include "testing/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace fs = std::filesystem;

TEST(DumpWatch, findsTheNewDumpOfAProcessAndNoOther)
{
    const brvTesting::TemporaryFolder root("brv-dümps");
    const std::vector<suite::EnvironmentVariable> variables = {{"STUDIO_DUMP_DIR", "elsewhere"}, {"STUDIO_DUMP_DIR", root.file()}};
    const std::string folder = "1.6.0.0/vehicle.exe/Velora_engine_vehicle.exe_";
    const auto watch = [&] { return suite::DumpWatch("bin/vehicle.exe", variables); };
    EXPECT_EQ(watch().dumpOf(42), "");
    root.write(folder + "05_03_2024-14_07_08_42_PC1_bob_1.6.0.0.dmp", "old");
    const suite::DumpWatch dumps = watch();
    EXPECT_EQ(dumps.dumpOf(42), "") << "another process had the number";

    root.write(folder + "05_03_2024-14_07_09_421_PC1_bob_1.6.0.0.dmp", "");
    root.write(folder + "05_03_2024-14_07_09_4_42_bob_1.6.0.0.dmp", "a computer called 42");
    root.write(folder + "05_03_2024-14_07_09_42_PC1_bob_1.6.0.0.dmp.part", "");
    root.write("1.6.0.0/display.exe/Velora_engine_display.exe_05_03_2024-14_07_09_42_PC1_bob_1.6.0.0.dmp", "");
    EXPECT_EQ(dumps.dumpOf(42), "");
    const std::string dump = root.write(folder + "05_03_2024-14_07_09_42_PC1_bob_1.6.0.0.dmp", "");
    EXPECT_TRUE(fs::equivalent(fs::u8path(dumps.dumpOf(42)), fs::u8path(dump)));
    EXPECT_EQ(suite::DumpWatch("vehicle.exe", {{"STUDIO_DUMP_DIR", root.file("nowhere")}}).dumpOf(42), "");
}
