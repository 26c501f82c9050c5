#pragma once

#include "brvUtils/core/Errors.h"
#include "brvUtils/core/Network.h"
#include "brvUtils/os/Network.h"
#include "brvUtils/startup/EnvConfig.h"
#include "testing/CapturedOutput.h"
#include "testing/EnvironmentGuard.h"
#include "testing/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace brvUtils {

/// A suite's root folder that holds configurations. The configuration belongs to the process, and so does each test.
class EnvConfigTest : public testing::Test
{
protected:
    void SetUp() override
    {
        static bool used = false;
        if (used) {
            GTEST_SKIP() << "needs a process of its own, which ctest gives to each test";
        }
        used = true;
    }

    /// Declares the text as main list file.
    void declare(const std::string& list) const { root.write("configurations.cfg", list); }

    /// Makes the files of a configuration.
    void configure(const std::string& folder, const std::string& dataFile, const std::string& version = "1.6") const
    {
        root.write(folder + "/Process.xfg", "");
        root.write(folder + "/datafile.cfg", dataFile);
        root.write(folder + "/version.cfg", version + "\n");
    }

    static std::string host()
    {
        initNetworkSystem();
        const std::string name = os::hostName();
        releaseNetworkSystem();
        return name;
    }

    /// A path with `/` only.
    static std::string slashes(std::string path)
    {
        std::replace(path.begin(), path.end(), '\\', '/');
        return path;
    }

    /// The text of the ConfigurationError that `action` throws.
    template <typename Action>
    static std::string fault(Action action)
    {
        try {
            action();
        } catch (const std::exception& error) {
            return error.what();
        }
        return "nothing thrown";
    }

    const brvTesting::TemporaryFolder root{"brv suite \xC3\xA9"};
    const std::string studio = slashes(root.file());
    const brvTesting::EnvironmentGuard studioPath{"STUDIO_PATH", studio};
    const brvTesting::EnvironmentGuard localPath{"LOCAL_STUDIO_PATH"};
    const brvTesting::EnvironmentGuard computePath{"COMPUTE_PATH"};
};

} // namespace brvUtils
