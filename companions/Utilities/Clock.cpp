#include "Utilities/Clock.h"

namespace Utilities {

Clock::Clock()
    : start_(std::chrono::steady_clock::now())
{
}

void Clock::init()
{
    start_ = std::chrono::steady_clock::now();
}

double Clock::run() const
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
}

} // namespace Utilities
