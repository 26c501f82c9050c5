#include "rfm2g/System.h"

#include "rfm2g/RingPlace.h"

#include <csignal>
#include <cstdlib>
#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

namespace softwareCard {

const char* const devicePrefix = "/dev/rfm2g";

std::uint32_t thisProcess()
{
    return static_cast<std::uint32_t>(getpid());
}

std::string variable(const char* name)
{
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

std::string defaultFolder()
{
    return "/dev/shm/rfm2g-" + std::to_string(geteuid());
}

std::string makeDefaultFolder()
{
    // Anybody may make files beside it.
    const std::string folder = defaultFolder();
    mkdir(folder.c_str(), 0700);
    struct stat status{};
    if (lstat(folder.c_str(), &status) != 0 || !S_ISDIR(status.st_mode)) {
        return folder + " is no folder, and cannot be made one";
    }
    return status.st_uid != geteuid() || (status.st_mode & 022) != 0 ? folder + " may be changed by others" : "";
}

std::thread startThread(std::function<void()> work)
{
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    for (const int ofFault : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGSYS}) {
        sigdelset(&all, ofFault); // blocked, a fault would end the process unseen by whoever handles it
    }
    pthread_sigmask(SIG_SETMASK, &all, &before);
    std::thread thread;
    try {
        thread = std::thread(std::move(work));
    } catch (...) {
        pthread_sigmask(SIG_SETMASK, &before, nullptr);
        throw;
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return thread;
}

void stayLoaded()
{
    Dl_info own{};
    if (dladdr(reinterpret_cast<const void*>(&stayLoaded), &own) != 0) {
        dlopen(own.dli_fname, RTLD_LAZY | RTLD_NOLOAD | RTLD_NODELETE);
    }
}

} // namespace softwareCard
