#include "rfm2g/Doorbells.h"

#include <ctime>
#include <linux/futex.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace softwareCard {

Doorbells::Doorbells(std::uint64_t ring) : ring_(ring) {}

Doorbells::~Doorbells() = default;

void Doorbells::sleep(unsigned, SleepWord& word, std::chrono::milliseconds atMost)
{
    const timespec timeout{static_cast<time_t>(atMost.count() / 1000), static_cast<long>(atMost.count() % 1000 * 1'000'000)};
    syscall(SYS_futex, &word, FUTEX_WAIT, 1u, &timeout, nullptr, 0);
}

void Doorbells::wake(unsigned, SleepWord& word)
{
    syscall(SYS_futex, &word, FUTEX_WAKE, 1, nullptr, nullptr, 0);
}

} // namespace softwareCard
