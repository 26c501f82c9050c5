#include "Crash.h"

#include <brvUtils/ipc/SemaphoreWin32.h>
#include <brvUtils/time/ThreadWin32.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>

namespace suite {

namespace {

// What the compiler knows nothing of, so that it leaves the faults below as they are.
volatile std::uintptr_t nowhere = 16; // and aligned
volatile int zero = 0, one = 1, result = 0;

void writeNowhere()
{
    *reinterpret_cast<volatile int*>(nowhere) = 1;
}

int overflow(int depth)
{
    volatile char taken[4096];
    taken[0] = static_cast<char>(depth);
    return zero == 0 ? overflow(depth + 1) + taken[0] : 0;
}

void fail()
{
    throw std::runtime_error("thrown on purpose");
}

void failUncaught() noexcept
{
    fail();
}

/// What a thread of the library does.
class WriteNowhere : public brvUtils::ThreadAction
{
public:
    bool execute() override
    {
        writeNowhere();
        return false;
    }
};

/// While this one goes on.
void onOtherThread()
{
    static brvUtils::ThreadWin32 thread(brvUtils::SemaphoreWin32::New, new WriteNowhere, true);
}

const struct
{
    const char* kind;
    void (*crash)();
} kinds[] = {
    {"", [] {}},
    {"null", writeNowhere},
    {"overflow", [] { result = overflow(1); }},
    {"division", [] { result = one / zero; }},
    {"abort", [] { std::abort(); }},
    {"exception", failUncaught},
    {"thread", onOtherThread},
};

} // namespace

bool CrashOnPurpose::isKind(const std::string& kind)
{
    for (const auto& known : kinds) {
        if (kind == known.kind) {
            return true;
        }
    }
    return false;
}

void CrashOnPurpose::crashWhenDue(double now) const
{
    if (now < after_) {
        return;
    }
    for (const auto& known : kinds) {
        if (kind_ == known.kind) {
            known.crash();
        }
    }
}

} // namespace suite
