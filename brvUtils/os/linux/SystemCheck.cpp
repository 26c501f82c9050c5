#include "brvUtils/os/SystemCheck.h"

#include "brvUtils/os/linux/NameSpaceFolder.h"
#include "brvUtils/os/User.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <sched.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <time.h>
#include <unistd.h>

namespace brvUtils::os {

namespace {

using State = SystemFact::State;
namespace fs = std::filesystem;

constexpr unsigned long long mebibyte = 1 << 20;
constexpr uid_t firstUser = 1000; // below are the system's own, whose objects stay

SystemFact sharedMemory()
{
    struct statvfs info{};
    if (statvfs("/dev/shm", &info) != 0) {
        return {State::problem, "shared memory", "/dev/shm is not there", "mount -t tmpfs -o mode=1777,size=50% tmpfs /dev/shm"};
    }
    const unsigned long long free = info.f_bavail * static_cast<unsigned long long>(info.f_frsize) / mebibyte;
    const unsigned long long all = info.f_blocks * static_cast<unsigned long long>(info.f_frsize) / mebibyte;
    const std::string text = std::to_string(free) + " of " + std::to_string(all) + " MB of /dev/shm are free";
    return free >= 64 ? SystemFact{State::good, "shared memory", text}
                      : SystemFact{free > 0 ? State::warning : State::problem, "shared memory", text, "mount -o remount,size=50% /dev/shm"};
}

SystemFact descriptors()
{
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    const std::string text = limit.rlim_cur == RLIM_INFINITY ? "any number of open files" : "at most " + std::to_string(limit.rlim_cur) + " open files";
    return limit.rlim_cur >= 256 ? SystemFact{State::good, "open files", text} : SystemFact{State::warning, "open files", text, "ulimit -n 1024"};
}

/// CAP_SYS_NICE.
bool mayEverything()
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.compare(0, 7, "CapEff:") == 0) {
            return (std::strtoull(line.c_str() + 7, nullptr, 16) >> 23 & 1) != 0;
        }
    }
    return false;
}

SystemFact realTime()
{
    rlimit limit{};
    getrlimit(RLIMIT_RTPRIO, &limit);
    if (mayEverything()) {
        return {State::good, "real time", "all priorities are allowed"};
    }
    const std::string user = effectiveUserName();
    const auto highest = static_cast<rlim_t>(sched_get_priority_max(SCHED_RR));
    return limit.rlim_cur > 0
        ? SystemFact{State::good, "real time", "priorities up to " + std::to_string(std::min(limit.rlim_cur, highest)) + " are allowed"}
        : SystemFact{State::warning, "real time", "this user may not run at real-time priority (-rt)",
              "echo '" + user + " - rtprio 1' | sudo tee -a /etc/security/limits.d/brv.conf, and log in again"};
}

SystemFact timers()
{
    timespec resolution{};
    clock_getres(CLOCK_MONOTONIC, &resolution);
    const bool fine = resolution.tv_sec == 0 && resolution.tv_nsec <= 100'000;
    const std::string text = "timers go by steps of " + std::to_string(resolution.tv_nsec) + " ns";
    return fine ? SystemFact{State::good, "timers", text}
                : SystemFact{State::warning, "timers", text, "boot the kernel with highres=on, without nohz=off"};
}

/// The last RemoveIPC of the files that configure logind.
bool removesObjects()
{
    std::vector<fs::path> files{"/etc/systemd/logind.conf"};
    std::vector<fs::path> later;
    for (const char* const folder : {"/usr/lib/systemd/logind.conf.d", "/run/systemd/logind.conf.d", "/etc/systemd/logind.conf.d"}) {
        std::error_code failure;
        for (fs::directory_iterator file(folder, failure), end; !failure && file != end; file.increment(failure)) {
            later.push_back(file->path());
        }
    }
    // Of the same name the one in the later folder counts.
    std::stable_sort(later.begin(), later.end(), [](const fs::path& left, const fs::path& right) { return left.filename() < right.filename(); });
    files.insert(files.end(), later.begin(), later.end());
    bool removes = true;
    for (const fs::path& path : files) {
        std::ifstream file(path);
        for (std::string line; std::getline(file, line);) {
            line.erase(std::remove(line.begin(), line.end(), ' '), line.end());
            if (line.compare(0, 10, "RemoveIPC=") == 0) {
                const std::string value = line.substr(10);
                removes = value != "no" && value != "false" && value != "0" && value != "off";
            }
        }
    }
    return removes;
}

SystemFact logind()
{
    const char* const subject = "RemoveIPC";
    if (access("/run/systemd/seats", F_OK) != 0) {
        return {State::good, subject, "there is no logind that removes objects"};
    }
    if (geteuid() < firstUser) {
        return {State::good, subject, "logind leaves the objects of this user alone"};
    }
    return removesObjects()
        ? SystemFact{State::warning, subject, "logind removes this user's objects when the user's last session ends, also those of running modules",
              "sudo mkdir -p /etc/systemd/logind.conf.d; printf '[Login]\\nRemoveIPC=no\\n' | sudo tee /etc/systemd/logind.conf.d/brv.conf; sudo systemctl restart systemd-logind"}
        : SystemFact{State::good, subject, "logind leaves objects alone"};
}

SystemFact nameSpace()
{
    NameSpaceFolder folder;
    const ErrorCode error = folder.openExisting();
    const char* const subject = "name space";
    if (error == error::none) {
        std::error_code failure;
        const auto files = std::distance(fs::directory_iterator(folder.path(), failure), fs::directory_iterator());
        return {State::good, subject, folder.path() + " is this user's, with " + std::to_string(failure ? 0 : files) + " files; brv ipc list shows the objects"};
    }
    if (error == error::fileNotFound || error == error::pathNotFound) {
        return {State::good, subject, folder.path() + " is made with the first object"};
    }
    // Objects of running modules may be in it: rights are corrected before anything is removed.
    const char* const chosen = std::getenv("STUDIO_IPC_NAMESPACE");
    const bool shared = chosen != nullptr && *chosen != '\0';
    struct stat status{};
    const bool ours = lstat(folder.path().c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == geteuid();
    return {State::problem, subject, folder.path() + " is no folder " + (shared ? "of this user and a group" : "of this user's alone") + ", so that no object can be made",
        ours ? (shared ? "chmod 2770 '" : "chmod 700 '") + folder.path() + "'"
            : shared ? "export STUDIO_IPC_NAMESPACE=NAME, another one, or its owner types: chmod 2770 '" + folder.path() + "'"
                     : "sudo rm -r '" + folder.path() + "'"};
}

} // namespace

std::vector<SystemFact> systemFacts()
{
    return {sharedMemory(), descriptors(), realTime(), timers(), logind(), nameSpace(), cardDriverFact()};
}

} // namespace brvUtils::os
