#include "runtime/loop/EventLoop.h"

#include <utility>

namespace host {

void EventLoop::Post(std::function<void()> event) {
    posted_.push_back(std::move(event));
}

void EventLoop::PostTo(std::weak_ptr<const void> receiver, std::function<void()> event, std::function<void()> dropped) {
    posted_.push_back([receiver = std::move(receiver), event = std::move(event), dropped = std::move(dropped)] {
        if (!receiver.expired()) {
            event();
        } else if (dropped) {
            dropped();
        }
    });
}

bool EventLoop::PostFromThread(const ThreadMessage& message) noexcept {
    const bool isQueued = fromThreads_.Push(message);
    driver_.Wake();
    return isQueued;
}

void EventLoop::RunDue(Microseconds now, const bool& isEnding) {
    SetNow(now);
    do {
        RunPosted();
    } while (!isEnding && timers_.FireFirstExpired(now_));
}

void EventLoop::BeginInput() {
    SetNow(clock_.Now());
    RunPosted();
}

void EventLoop::RunPosted() {
    DeliverThreadMessages();
    while (!posted_.empty()) {
        const auto event = std::move(posted_.front());
        posted_.pop_front();
        event();
        DeliverThreadMessages();
    }
}

Microseconds EventLoop::NextDue() const {
    return posted_.empty() ? timers_.NextDue() : now_;
}

void EventLoop::Clear() {
    posted_.clear();
    timers_ = TimerQueue();
    ThreadMessage message;
    while (fromThreads_.Pop(message)) {
    }
}

void EventLoop::DeliverThreadMessages() {
    ThreadMessage message;
    while (fromThreads_.Pop(message)) message.target->OnThreadMessage(message);
}

}  // namespace host
