#include "brvUtils/ipc/ShmFactory.h"

#include "brvUtils/ipc/ShmWin32.h"
#include "brvUtils/startup/EnvConfig_test.h"
#include "testing/UniqueName.h"

#include <memory>

namespace brvUtils {
namespace {

struct ShmFactoryTest : EnvConfigTest
{
    const std::string name = brvTesting::uniqueName();

    bool livesInAFileMapping(short version) const
    {
        const brvTesting::CapturedOutput captured;
        const std::unique_ptr<IShm> shm(newShm(name.c_str(), 100, version, true));
        EXPECT_TRUE(shm == nullptr || dynamic_cast<ShmWin32*>(shm.get()) != nullptr);
        return shm != nullptr;
    }
};

TEST_F(ShmFactoryTest, LetsTheConfigurationChoosePerSegmentAndVersion)
{
    EXPECT_TRUE(livesInAFileMapping(0)) << "no configuration is selected";
    configure("c", "");
    declare("C=${STUDIO_PATH}/c\n");
    {
        const brvTesting::CapturedOutput captured;
        EnvConfig::setConfig("C", false);
    }
    EXPECT_TRUE(livesInAFileMapping(0)) << "it has no shm.cfg";
    root.write("c/shm.cfg", "Type=VMIC\n[" + name + "_3]\nType = VMIC\n[" + name + "]\nType = vmic\n[" + name + "_4]\nType=VMIC2\n");
    EXPECT_TRUE(livesInAFileMapping(0));
    EXPECT_TRUE(livesInAFileMapping(4));
    EXPECT_TRUE(livesInAFileMapping(5)) << "an entry outside the section is none";
    EXPECT_TRUE(livesInAFileMapping(3)) << "it does not say where on the card";
    root.write("c/shm.cfg", "[" + name + "_3]\nType = VMIC\nBaseAddress = 0\nInterrupt = 5\n");
    EXPECT_FALSE(livesInAFileMapping(3)) << "reflective memory that is refused, whether this computer has a card or not";
}

} // namespace
} // namespace brvUtils
