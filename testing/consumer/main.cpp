// A module that exchanges a part with itself: it reaches into the library and into a companion, derives from what the
// library exports and catches what the library throws.

#include <StudioVersion/Version.h>
#include <Utilities/System.h>
#include <brvUtils/core/Errors.h>
#include <brvUtils/data/MatDataFile.h>
#include <brvUtils/ipc/CompositeShm.h>
#include <brvUtils/ipc/SemaphoreWin32.h>
#include <brvUtils/ipc/ShmAble.h>
#include <brvUtils/ipc/ShmWin32.h>
#include <brvUtils/platform/RFileVersionInfo.h>
#include <brvUtils/startup/ModulePaths.h>

#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <string>

namespace {

struct Speed : brvUtils::ShmAble
{
    double value = 0;

    int getId() override { return 7; }
    int getSize() override { return sizeof value; }
    void put(void* destination) override { std::memcpy(destination, &value, sizeof value); }
    void get(void* source) override { std::memcpy(&value, source, sizeof value); }
};

struct Vehicle : brvUtils::CompositeShm
{
    Speed speed;

    explicit Vehicle(const char* name)
        : CompositeShm(brvUtils::ShmWin32::New, brvUtils::SemaphoreWin32::New, name, sizeof speed.value, 1, 0)
    {
        addPart(speed);
    }

    bool send() { return put(speed, 1.0); }
    bool receive() { return get(speed, 1.0); }
};

bool throwsAcrossTheBorder()
{
    try {
        AssertAbort("expected", __LINE__);
    } catch (const brvUtils::ProgrammingError&) {
        return true;
    }
    return false;
}

/// What reads MAT files, which the library loads from beside it, unless it was built without.
bool hasAllOfTheLibrary()
{
    try {
        MatDataFile().load("none.mat", {});
    } catch (const std::out_of_range& fault) {
        return std::string(fault.what()).find("cannot be loaded") == std::string::npos;
    }
    return false;
}

/// The version that the build gave to this program.
bool knowsItsVersion()
{
    const brvUtils::RFileVersionInfo version(brvUtils::GetModuleFilePath());
    return version.key("FileVersion") == "2.8.4.10" && version.key("Comments") == "\xC3\xA9, \xE5\x88\xB6\xE5\x8B\x95" &&
        version.key("FileDescription") == "OFF" && version.key()["ProductName"] == "consumer";
}

} // namespace

// consumer NAME [versioned]: the name is one that no other program uses; the build gave the program a version, or did not.
int main(int argc, char** argv)
{
    if (argc == 3 && !knowsItsVersion()) {
        return 4;
    }
    if (argc < 2 || Utilities::System::GetEffectiveUserName().empty() || !throwsAcrossTheBorder() || !hasAllOfTheLibrary() ||
        getMajorVersion() != 1 || getMinorVersion() < 6) {
        return 1;
    }
    Vehicle sender(argv[1]);
    Vehicle receiver(argv[1]);
    sender.speed.value = 13.9;
    if (!sender.send() || !receiver.receive()) {
        return 2;
    }
    std::printf("consumer received %.1f\n", receiver.speed.value);
    return receiver.speed.value == 13.9 ? 0 : 3;
}
