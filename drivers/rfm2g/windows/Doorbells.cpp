#include "rfm2g/Doorbells.h"

#include <cwchar>
#include <windows.h>

namespace softwareCard {

Doorbells::Doorbells(std::uint64_t ring) : ring_(ring) {}

Doorbells::~Doorbells()
{
    for (const std::atomic<void*>& bell : bells_) {
        if (bell != nullptr) {
            CloseHandle(bell);
        }
    }
}

/// The named event of a place; null when the system has none to give.
void* Doorbells::bell(unsigned place)
{
    if (void* known = bells_[place].load()) {
        return known;
    }
    wchar_t name[64];
    std::swprintf(name, std::size(name), L"Local\\rfm2g-%08lx%08lx-%u", static_cast<unsigned long>(ring_ >> 32),
        static_cast<unsigned long>(ring_ & 0xFFFF'FFFF), place);
    void* const made = CreateEventW(nullptr, FALSE, FALSE, name);
    void* known = nullptr;
    if (made != nullptr && !bells_[place].compare_exchange_strong(known, made)) {
        CloseHandle(made);
        return known;
    }
    return made;
}

void Doorbells::sleep(unsigned place, SleepWord&, std::chrono::milliseconds atMost)
{
    const auto timeout = static_cast<DWORD>(atMost.count());
    if (void* const event = bell(place)) {
        WaitForSingleObject(event, timeout);
    } else {
        Sleep(timeout);
    }
}

void Doorbells::wake(unsigned place, SleepWord&)
{
    if (void* const event = bell(place)) {
        SetEvent(event);
    }
}

} // namespace softwareCard
