#include "backend/desktop/waiting/EndSignals.h"

#include <cerrno>
#include <ctime>

namespace host {

std::atomic<EndSignals*> EndSignals::current_{nullptr};

EndSignals::EndSignals(DisplayWait& wait) : wait_(wait) {
    current_.store(this, std::memory_order_release);
    struct sigaction action {};
    action.sa_handler = Handle;
    action.sa_flags = SA_RESTART;
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        sigaction(kSignals[i], nullptr, &before_[i]);
        // What nohup or a shell's background job has switched off stays off.
        if (before_[i].sa_handler != SIG_IGN) sigaction(kSignals[i], &action, nullptr);
    }
}

EndSignals::~EndSignals() {
    for (std::size_t i = 0; i < kSignals.size(); ++i) sigaction(kSignals[i], &before_[i], nullptr);
    current_.store(nullptr, std::memory_order_release);
}

void EndSignals::Handle(int signal) noexcept {
    const int error = errno;
    if (EndSignals* const self = current_.load(std::memory_order_acquire)) self->OnSignal(signal);
    errno = error;
}

void EndSignals::OnSignal(int signal) noexcept {
    constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;
    std::timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    const std::int64_t now = time.tv_sec * kNanosecondsPerSecond + time.tv_nsec;
    std::int64_t first = kNever;
    if (!firstArrival_.compare_exchange_strong(first, now) && now - first > kSameWish) {
        // Delivered with its usual effect when this handler returns.
        std::signal(signal, SIG_DFL);
        std::raise(signal);
        return;
    }
    hasArrived_.store(true, std::memory_order_release);
    wait_.Wake();
}

}  // namespace host
