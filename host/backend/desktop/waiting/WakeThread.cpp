#include "backend/desktop/waiting/WakeThread.h"

#include <cerrno>

namespace host {

WakeThread::WakeThread() : eventType_(SDL_RegisterEvents(1)) {
    sem_init(&wanted_, 0, 0);
    thread_ = std::thread([this] { Run(); });
}

WakeThread::~WakeThread() {
    isEnding_.store(true, std::memory_order_release);
    sem_post(&wanted_);
    thread_.join();
    sem_destroy(&wanted_);
}

void WakeThread::Run() noexcept {
    for (;;) {
        while (sem_wait(&wanted_) != 0 && errno == EINTR) {
        }
        if (isEnding_.load(std::memory_order_acquire)) return;
        SDL_Event event{};
        event.type = eventType_;
        SDL_PushEvent(&event);
    }
}

}  // namespace host
