#include "brvUtils/os/CrashFilter.h"

#include <csignal>
#include <cstddef>
#include <sys/mman.h>
#include <unistd.h>

namespace brvUtils::os {
namespace {

/// A thread's stack for handlers of signals, with a page below it that nobody can write to. Where another one stands that is
/// large enough, it stays; a smaller one comes back when the thread ends.
class CrashStack
{
public:
    CrashStack() noexcept
    {
        if (sigaltstack(nullptr, &before_) != 0 || ((before_.ss_flags & SS_DISABLE) == 0 && before_.ss_size >= wanted())) {
            return;
        }
        const std::size_t page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
        size_ = page + (wanted() + page - 1) / page * page;
        base_ = mmap(nullptr, size_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_STACK, -1, 0);
        if (base_ == MAP_FAILED) {
            return;
        }
        mprotect(base_, page, PROT_NONE);
        stack_t stack{};
        stack.ss_sp = static_cast<char*>(base_) + page;
        stack.ss_size = size_ - page;
        if (sigaltstack(&stack, nullptr) != 0) {
            release();
        }
    }

    ~CrashStack()
    {
        stack_t now{};
        if (base_ == MAP_FAILED || sigaltstack(nullptr, &now) != 0) {
            return;
        }
        const char* base = static_cast<const char*>(base_);
        const bool isOurs = now.ss_sp >= base && now.ss_sp < base + size_;
        if (!isOurs || sigaltstack(&before_, nullptr) == 0) {
            release();
        }
    }

    CrashStack(const CrashStack&) = delete;
    CrashStack& operator=(const CrashStack&) = delete;

private:
    /// What a filter may use, and what the kernel puts there of the processor's registers.
    static std::size_t wanted()
    {
        const long frame = sysconf(_SC_MINSIGSTKSZ);
        return 128 * 1024 + static_cast<std::size_t>(frame > 0 ? frame : 0);
    }

    void release()
    {
        munmap(base_, size_);
        base_ = MAP_FAILED;
    }

    void* base_ = MAP_FAILED;
    std::size_t size_ = 0;
    stack_t before_{};
};

} // namespace

void prepareThreadForCrash() noexcept
{
    [[maybe_unused]] static thread_local const CrashStack stack;
}

} // namespace brvUtils::os
