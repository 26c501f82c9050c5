#include "brvUtils/os/MachineSetting.h"

#include "testing/EnvironmentGuard.h"
#include "testing/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

using namespace brvUtils::os;
using namespace brvTesting;
namespace fs = std::filesystem;

/// A key's first setting, asked for by several processes of two users at once.
class Rush
{
public:
    explicit Rush(const std::string& key)
    {
        EXPECT_EQ(pipe(start_), 0);
        EXPECT_EQ(pipe(results_), 0);
        for (int i = 0; i < 8; ++i) {
            const pid_t child = fork();
            if (child == 0) {
                _exit(ask(key, i) ? 0 : 1);
            }
            children_.push_back(child);
        }
        close(start_[0]);
        close(results_[1]);
    }

    /// What the processes got, each of which has an end that is good.
    std::set<char> results()
    {
        close(start_[1]); // all begin
        std::set<char> all;
        for (char result = 0; read(results_[0], &result, 1) == 1;) {
            all.insert(result);
        }
        close(results_[0]);
        for (const pid_t child : children_) {
            int status = -1;
            EXPECT_EQ(waitpid(child, &status, 0), child);
            EXPECT_EQ(status, 0) << "a process got no text";
        }
        return all;
    }

private:
    bool ask(const std::string& key, int number)
    {
        constexpr uid_t nobody = 65534;
        if (number % 2 != 0 && setresuid(nobody, nobody, nobody) != 0) {
            return false;
        }
        close(start_[1]);
        char none = 0;
        std::string text(1, static_cast<char>('a' + number));
        return read(start_[0], &none, 1) == 0 && machineSetting(key, "name", text) == error::none
            && write(results_[1], text.data(), 1) == 1;
    }

    int start_[2];
    int results_[2];
    std::vector<pid_t> children_;
};

TEST(LinuxMachineSetting, IsOneForUsersWhoComeAtOnce)
{
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can become somebody else";
    }
    const TemporaryFolder folder;
    const EnvironmentGuard place("STUDIO_SETTINGS_DIR", folder.file());
    fs::permissions(folder.path(), fs::perms::all);
    for (int round = 0; round < 20; ++round) {
        EXPECT_EQ(Rush(std::to_string(round)).results().size(), 1U);
    }
    for (const auto& entry : fs::directory_iterator(folder.path())) {
        EXPECT_EQ(entry.path().extension(), ".setting") << "nothing else is left";
    }
}

} // namespace
