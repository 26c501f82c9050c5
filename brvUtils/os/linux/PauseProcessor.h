#pragma once

#if defined(__x86_64__) || defined(__i386__)
#include <immintrin.h>
#endif

namespace brvUtils::os {

/// Tells the processor that a loop waits, so that it saves power and leaves its units to the other thread of the core.
inline void pauseProcessor()
{
#if defined(__x86_64__) || defined(__i386__)
    _mm_pause();
#elif defined(__aarch64__)
    asm volatile("yield");
#endif
}

} // namespace brvUtils::os
