#pragma once

#include "brvUtils/ipc/SemaphoreWin32.h"

#include <functional>

namespace brvUtils {

/// What the semaphores of a client do, told by the test: factories are plain functions and know of no test.
struct SemaphoreScript
{
    std::function<bool(double)> ask; ///< Without one the semaphore is a real one.
    std::function<void()> free = [] {};
    std::function<void()> end = [] {}; ///< The semaphore is deleted.
    bool absent = false; ///< The factory gives null.
};

struct SemaphoreScripts
{
    static inline SemaphoreScript watched;
    static inline SemaphoreScript protection;

    static void reset() { watched = protection = SemaphoreScript(); }

    static ISemaphore* make(char const* name, bool initiallyFree, bool withInstance)
    {
        SemaphoreScript& script = name != nullptr ? watched : protection;
        if (script.absent) {
            return nullptr;
        }
        return script.ask ? new Semaphore(script) : SemaphoreWin32::New(name, initiallyFree, withInstance);
    }

private:
    struct Semaphore : ISemaphore
    {
        explicit Semaphore(SemaphoreScript& script)
            : script_(script)
        {
        }
        ~Semaphore() override { script_.end(); }
        bool ask(double timeout) override { return script_.ask(timeout); }
        bool free() override
        {
            script_.free();
            return true;
        }
        SemaphoreScript& script_;
    };
};

} // namespace brvUtils
