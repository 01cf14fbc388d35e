#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

namespace host {

class ThreadMessageHandler;

/// A few bytes of news from another thread for an object of the UI thread.
struct ThreadMessage {
    ThreadMessageHandler* target = nullptr;
    std::uint32_t kind = 0;  ///< the target's own enumeration
    std::uint64_t value = 0;
};

/// Receives, on the UI thread, what another thread pushed for it. Must live as long as the event loop that delivers.
class ThreadMessageHandler {
public:
    virtual void OnThreadMessage(const ThreadMessage& message) = 0;

protected:
    ~ThreadMessageHandler() = default;
};

/// The one road from other threads to the UI thread: a bounded queue for many producers and one consumer, without
/// locks. Each cell carries a turn number that says whether it is free for the producer or full for the consumer of
/// that lap (Dmitry Vyukov, "Bounded MPMC queue", 1024cores.net, with its consumer side reduced to one thread).
class ThreadQueue {
public:
    static constexpr std::size_t kCapacity = 1024;

    ThreadQueue() noexcept {
        for (std::size_t i = 0; i < kCapacity; ++i) cells_[i].turn.store(i, std::memory_order_relaxed);
    }
    ThreadQueue(const ThreadQueue&) = delete;
    ThreadQueue& operator=(const ThreadQueue&) = delete;

    /// Any thread. False when the queue is full; the message is then lost.
    bool Push(const ThreadMessage& message) noexcept {
        std::size_t position = tail_.load(std::memory_order_relaxed);
        for (;;) {
            Cell& cell = cells_[position % kCapacity];
            const std::size_t turn = cell.turn.load(std::memory_order_acquire);
            if (turn == position) {
                if (tail_.compare_exchange_weak(position, position + 1, std::memory_order_relaxed)) {
                    cell.message = message;
                    cell.turn.store(position + 1, std::memory_order_release);
                    return true;
                }
            } else if (turn < position) {
                return false;
            } else {
                position = tail_.load(std::memory_order_relaxed);
            }
        }
    }

    /// The UI thread alone. False when nothing is there.
    bool Pop(ThreadMessage& message) noexcept {
        Cell& cell = cells_[head_ % kCapacity];
        if (cell.turn.load(std::memory_order_acquire) != head_ + 1) return false;
        message = cell.message;
        cell.turn.store(head_ + kCapacity, std::memory_order_release);
        ++head_;
        return true;
    }

private:
    struct Cell {
        std::atomic<std::size_t> turn{0};
        ThreadMessage message;
    };

    std::array<Cell, kCapacity> cells_;
    std::atomic<std::size_t> tail_{0};
    std::size_t head_ = 0;
};

}  // namespace host
