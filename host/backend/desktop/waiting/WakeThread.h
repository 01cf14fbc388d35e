#pragma once

#include <semaphore.h>

#include <atomic>
#include <thread>

#include "backend/desktop/SdlLibrary.h"

namespace host {

/// Wakes the UI thread out of SDL's wait for events. SDL can be woken only by pushing an event, which locks and
/// allocates; so this thread of our own pushes it, and whoever wants to wake posts a semaphore, which even a signal
/// handler may.
class WakeThread {
public:
    WakeThread();
    ~WakeThread();
    WakeThread(const WakeThread&) = delete;
    WakeThread& operator=(const WakeThread&) = delete;

    /// Any thread, and signal handlers. Neither blocks nor allocates.
    void Wake() noexcept { sem_post(&wanted_); }

private:
    void Run() noexcept;

    sem_t wanted_;
    std::atomic<bool> isEnding_{false};
    Uint32 eventType_;
    std::thread thread_;
};

}  // namespace host
