#include "runtime/loop/TimerQueue.h"

#include "backend/LoopDriver.h"

namespace host {

TimerQueue::Id TimerQueue::Start(Microseconds due, std::function<void()> fire) {
    const Id id = ++lastId_;
    timers_.emplace(Key{due, id}, std::move(fire));
    dues_.emplace(id, due);
    return id;
}

void TimerQueue::Cancel(Id id) {
    const auto found = dues_.find(id);
    if (found == dues_.end()) return;
    timers_.erase(Key{found->second, id});
    dues_.erase(found);
}

bool TimerQueue::FireFirstExpired(Microseconds now) {
    if (timers_.empty() || timers_.begin()->first.first > now) return false;
    // The node leaves the queue first: the callback may start, cancel or destroy whatever it likes.
    const auto node = timers_.extract(timers_.begin());
    dues_.erase(node.key().second);
    node.mapped()();
    return true;
}

Microseconds TimerQueue::NextDue() const {
    return timers_.empty() ? LoopClient::kNever : timers_.begin()->first.first;
}

}  // namespace host
