#include "brvUtils/time/internal/Poller.h"

#include "brvUtils/ipc/SemaphoreWin32.h"
#include "brvUtils/os/Thread.h"

#include <algorithm>
#include <mutex>
#include <vector>

namespace brvUtils {

class Poller::Beat : public ThreadAction
{
public:
    Beat(double period, void (*callback)(void*), void* context, Pause pause)
        : period_(period)
        , callback_(callback)
        , context_(context)
        , pause_(pause)
    {
    }

    void restart() { clock_.init(); }

    const Gate& gate() const { return gate_; }

    /// Whether its call is running on this thread.
    bool isCalling() const { return calling == this; }

    bool execute() override
    {
        if (*gate_) {
            callWhenDue();
        }
        if (pause_ == Pause::yields) {
            os::yieldThread();
        }
        return true;
    }

private:
    void callWhenDue()
    {
        const double now = clock_.run();
        const double elapsed = now - lastBeat_;
        if (elapsed >= period_ - lag_) {
            lag_ = elapsed - period_ + lag_;
            lastBeat_ = now;
            calling = this;
            callback_(context_);
            calling = nullptr;
        }
    }

    static thread_local const Beat* calling;

    const double period_;
    void (*const callback_)(void*);
    void* const context_;
    const Pause pause_;
    const Gate gate_ = std::make_shared<std::atomic<bool>>(false);
    Utilities::Clock clock_;
    double lastBeat_ = 0.0; ///< Clock time.
    double lag_ = 0.0; ///< Seconds by which that was late.
};

thread_local const Poller::Beat* Poller::Beat::calling = nullptr;

namespace {

/// Keeps a thread that was asked to end from within its own call until that has happened.
void leaveBehind(std::unique_ptr<ThreadWin32> thread)
{
    static std::mutex mutex;
    // Never destroyed: at the end of the process one may still be in its call.
    static auto& left = *new std::vector<std::unique_ptr<ThreadWin32>>;
    const std::lock_guard lock(mutex);
    left.erase(std::remove_if(left.begin(), left.end(), [](const auto& other) { return other->stop(0.0); }), left.end());
    left.push_back(std::move(thread));
}

} // namespace

Poller::Poller(double period, void (*callback)(void*), void* context, Pause pause)
{
    auto beat = std::make_unique<Beat>(period, callback, context, pause);
    beat_ = beat.get();
    thread_.reset(new ThreadWin32(SemaphoreWin32::New, beat.release(), false));
}

Poller::~Poller()
{
    if (!running() || stop(0.0)) {
        return;
    }
    if (beat_->isCalling()) {
        leaveBehind(std::move(thread_));
        return;
    }
    while (!stop(IThread::defaultTimeOut)) {
    }
}

Poller::Gate Poller::start()
{
    beat_->restart();
    thread_->startWithPriorityOffset(-1);
    started_ = true;
    return beat_->gate();
}

bool Poller::stop(double timeout)
{
    const bool stopped = thread_->stop(beat_->isCalling() ? 0.0 : timeout); // its own call would wait in vain
    ended_ = ended_ || stopped;
    return stopped;
}

} // namespace brvUtils
