#include "runtime/loop/TimerQueue.h"

#include <algorithm>

#include "backend/LoopDriver.h"

namespace host {

TimerQueue::Id TimerQueue::Start(Microseconds due, std::function<void()> fire, Microseconds slack) {
    const Id id = ++lastId_;
    timers_.emplace(Key{due, id}, Timer{std::move(fire), slack});
    dues_.emplace(id, due);
    return id;
}

void TimerQueue::Cancel(Id id) {
    const auto found = dues_.find(id);
    if (found == dues_.end()) return;
    timers_.erase(Key{found->second, id});
    dues_.erase(found);
}

bool TimerQueue::FireFirstDue(Microseconds now) {
    if (timers_.empty() || timers_.begin()->first.first > now) return false;
    // The node leaves the queue first: the callback may start, cancel or destroy whatever it likes.
    const auto node = timers_.extract(timers_.begin());
    dues_.erase(node.key().second);
    node.mapped().fire();
    return true;
}

Microseconds TimerQueue::NextExpiry() const {
    Microseconds expiry = LoopClient::kNever;
    Microseconds latest = LoopClient::kNever;
    for (const auto& [key, timer] : timers_) {
        const Microseconds due = key.first;
        if (due > latest) break;
        expiry = due;
        latest = std::min(latest, due + timer.slack);
    }
    return expiry;
}

}  // namespace host
