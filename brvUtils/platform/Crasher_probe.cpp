// crasher WAY [ARGUMENT] [NAME=VALUE]...: a program that crashes in the way that is asked for, for tests of what is left behind.
// The variables are set in time; that of the user's name does not reach a program otherwise under Wine.

#include "brvUtils/os/Environment.h"
#include "brvUtils/os/PeriodicTimer.h"
#include "brvUtils/os/Thread.h"
#include "brvUtils/platform/CrashDump.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <map>
#include <mutex>
#include <stdexcept>
#include <string>
#include <utility>

namespace os = brvUtils::os;

namespace {

std::string given; // the argument

void writeNull()
{
    int* volatile nowhere = nullptr;
    *nowhere = 1;
}

int overflowStack(int depth)
{
    volatile char frame[512];
    frame[0] = static_cast<char>(depth);
    return depth < 0 ? 0 : overflowStack(depth + 1) + frame[0];
}

void divideByZero()
{
    volatile int zero = 0;
    std::printf("%d\n", 7 / zero); // 1 / x needs no division
}

os::Thread* start(void (*body)(void*))
{
    return os::startThread(body, nullptr).thread;
}

void waitForEnd(os::Thread* thread)
{
    os::waitThread(thread, os::infinite);
}

void overflowOnTimer()
{
    static std::mutex end;
    end.lock();
    os::PeriodicTimer* timer = nullptr;
    os::startPeriodicTimer(timer, 1, [](void*) { overflowStack(0); }, nullptr);
    end.lock();
}

/// Damage that the heap notices while its lock is taken, when it is asked for more: with a second thread it does take it.
void damageHeap()
{
    static std::mutex end;
    end.lock();
    start([](void*) { end.lock(); });
    char* volatile block = static_cast<char*>(std::malloc(5000));
    char* volatile behind = static_cast<char*>(std::malloc(5000));
    char* const dangling = block;
    std::free(block);
    asm volatile("" : : : "memory");
    std::memset(const_cast<char*>(*const_cast<char* const volatile*>(&dangling)), 0x41, 64);
    block = static_cast<char*>(std::malloc(6000));
    std::free(behind);
    std::abort(); // where a heap has not noticed
}

void crashOnTwoThreads()
{
    static std::atomic<int> ready{0};
    const auto crash = [](void*) {
        ++ready;
        while (ready.load() < 2) {
        }
        writeNull();
    };
    start(crash);
    waitForEnd(start(crash));
}

void crashAmongMany()
{
    static std::atomic<int> ready{0};
    static std::mutex end;
    constexpr int count = 200;
    end.lock();
    for (int thread = 0; thread < count; ++thread) {
        start([](void*) {
            ++ready;
            end.lock();
        });
    }
    while (ready.load() < count) {
        os::yieldThread();
    }
    writeNull();
}

/// The verdict that is given, but the end when it is asked a second time.
long judge(_EXCEPTION_POINTERS*)
{
    static bool again = false;
    std::fputs(again ? "asked again\n" : "asked\n", stderr);
    return std::exchange(again, true) ? 1 : std::atoi(given.c_str());
}

long dumpIntoGivenFile(_EXCEPTION_POINTERS* exception)
{
    std::fputs(GenerateDump(given, exception) ? "dumped\n" : "not dumped\n", stderr);
    return 1;
}

long crashAgain(_EXCEPTION_POINTERS*)
{
    writeNull();
    return 1;
}

const std::map<std::string, std::function<void()>> ways{
    {"null", writeNull},
    {"overflow", [] { overflowStack(0); }},
    {"overflow-on-thread", [] { waitForEnd(start([](void*) { overflowStack(0); })); }},
    {"overflow-on-timer-thread", overflowOnTimer},
    {"divide", divideByZero},
    {"illegal", [] { __builtin_trap(); }},
    {"abort", [] { std::abort(); }},
    {"throw", [] { throw std::runtime_error("nobody catches this"); }},
    {"thread", [] { waitForEnd(start([](void*) { writeNull(); })); }},
    {"two-threads", crashOnTwoThreads},
    {"heap", damageHeap},
    {"many-threads", crashAmongMany},
    {"own-filter", [] { std::fputs(RegisterDumpCallback(judge) ? "" : "none before\n", stderr), writeNull(); }},
    {"own-dump", [] { RegisterDumpCallback(dumpIntoGivenFile), writeNull(); }},
    {"filter-crashes", [] { RegisterDumpCallback(crashAgain), writeNull(); }},
    {"no-filter", [] { RegisterDumpCallback(nullptr), writeNull(); }},
    {"generate", [] { std::exit(GenerateDump(given, nullptr) ? 0 : 1); }},
};

} // namespace

int main(int count, char** arguments)
{
    std::setvbuf(stderr, nullptr, _IONBF, 0); // some run-time libraries keep what goes to a pipe, and a crash loses it
    for (int i = 2; i < count; ++i) {
        const std::string argument = arguments[i];
        const std::size_t equals = argument.find('=');
        if (equals != std::string::npos) {
            os::setEnvironmentVariable(argument.substr(0, equals), argument.substr(equals + 1));
        }
    }
    RegisterDump();
    const auto way = ways.find(count > 1 ? arguments[1] : "");
    if (way == ways.end()) {
        std::fputs("crasher: no such way to crash\n", stderr);
        return 2;
    }
    given = count > 2 ? arguments[2] : "";
    way->second();
    return 3; // did not crash
}
