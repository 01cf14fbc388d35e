#include "backend/desktop/waiting/EndSignals.h"

#include <cerrno>

namespace host {

std::atomic<EndSignals*> EndSignals::current_{nullptr};

EndSignals::EndSignals(DisplayWait& wait) : wait_(wait) {
    current_.store(this, std::memory_order_release);
    struct sigaction action {};
    action.sa_handler = Handle;
    action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
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

void EndSignals::Handle(int /*signal*/) noexcept {
    const int error = errno;
    if (EndSignals* const self = current_.load(std::memory_order_acquire)) {
        self->hasArrived_.store(true, std::memory_order_release);
        self->wait_.Wake();
    }
    errno = error;
}

}  // namespace host
