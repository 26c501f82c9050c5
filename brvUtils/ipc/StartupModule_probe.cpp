// A module that ends after so many steps of its start. The first argument is their number.

#include "brvUtils/ipc/CompositeShm.h"
#include "brvUtils/ipc/SemaphoreWin32.h"
#include "brvUtils/ipc/ShmFactory.h"
#include "brvUtils/startup/ArgParser.h"
#include "brvUtils/startup/EnvConfig.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <string>

namespace {

using namespace brvUtils;

struct Speed : ShmAble
{
    int getId() override { return 1; }
    int getSize() override { return sizeof value; }
    void put(void* segment) override { std::memcpy(segment, &value, sizeof value); }
    void get(void* segment) override { std::memcpy(&value, segment, sizeof value); }
    double value = 0;
};

struct CarShm : CompositeShm
{
    CarShm() : CompositeShm(newShm, SemaphoreWin32::New, "Startup", sizeof(double), 1, 0) { addPart(speed); }
    bool exchange() { return put(speed, 1.0) && get(speed, 1.0); }
    Speed speed;
};

int start(int steps, int argc, char** argv)
{
    if (steps < 1) {
        return 0;
    }
    bool fast = false;
    int frames = 10;
    std::string road;
    ArgParser arguments(argc, argv, "startup", "fast:bool:false:Do not wait;frames:int:10:How many frames;road:string::Which road;");
    arguments.addBooleanHandler("fast", fast);
    arguments.addIntHandler("frames", frames);
    arguments.addStringHandler("road", road);
    if (!arguments.parse() || !fast || frames != 20 || road != "circle") {
        std::fputs(arguments.getErrorMessage().c_str(), stderr);
        return 1;
    }
    if (steps < 2) {
        return 0;
    }
    EnvConfig::setConfig(arguments.getConfigName(), false);
    if (steps < 3) {
        return 0;
    }
    CarShm car;
    const bool exchanged = car.exchange();
    if (steps > 3) {
        std::puts("ready");
        std::fflush(stdout);
        std::getchar(); // until whoever started it wants its end
    }
    return exchanged ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    try {
        return start(argc > 1 ? std::atoi(argv[1]) : 0, argc, argv);
    } catch (const std::exception& fault) {
        std::fprintf(stderr, "%s\n", fault.what());
        return 1;
    }
}
