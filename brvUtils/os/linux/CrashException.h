#pragma once

#include <csignal>
#include <sys/types.h>
#include <ucontext.h>

/// A crash as the kernel told it to the handler of its signal. Valid while the handler runs.
struct _EXCEPTION_POINTERS
{
    const siginfo_t* signal;
    const ucontext_t* context; ///< Where the thread was.
    pid_t thread; ///< The one that crashed.
};
