#pragma once

#include "brvUtils/ipc/ConfigurationPortManager.h"
#include "brvUtils/ipc/ShmWin32.h"
#include "testing/EnvironmentGuard.h"
#include "testing/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <stdexcept>
#include <vector>

namespace portTests {

using Ports = std::vector<unsigned short>;

constexpr char guardName[] = "SEM_VeloraConfigPortManagement";
constexpr char tableName[] = "SHM_VeloraConfigPortManagement";
constexpr size_t portCount = 202;

/// The table as other programs see it.
class Table
{
public:
    explicit Table(size_t size = portCount * 4)
        : segment_(tableName, size, 0, false)
        , entries_(static_cast<std::atomic<std::uint32_t>*>(segment_.getPtr()))
    {
    }

    std::atomic<std::uint32_t>& operator[](size_t i) { return entries_[i]; }
    std::vector<std::uint32_t> values() const { return {entries_, entries_ + portCount}; }

private:
    brvUtils::ShmWin32 segment_;
    std::atomic<std::uint32_t>* entries_;
};

/// Each test has a computer's ports for itself: by a name space of its own where there are such, else since the tests of
/// ports run one at a time and nothing is left of one at its end.
class ConfigurationPortManager : public testing::Test
{
protected:
    ~ConfigurationPortManager() override
    {
        if (used_) {
            delete brvUtils::ConfigurationPortManager::getInstance();
        }
    }

    brvUtils::ConfigurationPortManager& manager()
    {
        used_ = true;
        auto* manager = brvUtils::ConfigurationPortManager::getInstance();
        return manager != nullptr ? *manager : throw std::runtime_error("there is no manager");
    }

    /// Empty after a failure.
    Ports allocate(size_t count)
    {
        Ports ports{1, 2, 3};
        const bool had = manager().allocate(count, ports);
        EXPECT_EQ(had, !ports.empty());
        return ports;
    }

private:
    brvTesting::TemporaryFolder folder_;
    brvTesting::EnvironmentGuard nameSpace_{"STUDIO_IPC_NAMESPACE", (folder_.path() / "objects").string()};
    bool used_ = false;
};

} // namespace portTests
