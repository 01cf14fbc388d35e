#pragma once

#include <atomic>
#include <functional>

namespace host {

class EventLoop;

/// By which other threads have something done on the UI thread: there is news of which the handler knows where to find
/// it. Made and destroyed on the UI thread, when no other thread can raise it.
class ThreadSignal {
public:
    /// `handler` runs on the UI thread before the next posted event, once for all that was raised until then. The loop
    /// must outlive the signal.
    ThreadSignal(EventLoop& loop, std::function<void()> handler);
    ~ThreadSignal();
    ThreadSignal(const ThreadSignal&) = delete;
    ThreadSignal& operator=(const ThreadSignal&) = delete;

    /// From any thread, the audio thread included: neither blocks nor allocates.
    void Raise() noexcept;

private:
    friend class EventLoop;

    EventLoop& loop_;
    std::function<void()> handler_;
    std::atomic<bool> isRaised_{false};
};

}  // namespace host
