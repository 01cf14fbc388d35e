#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <memory>
#include <span>

namespace host {

/// A bounded queue from one thread to one other, without locks. What one Push puts in becomes visible as a whole.
template <typename Item>
class SpscRing {
public:
    /// `capacity` is a power of two.
    explicit SpscRing(std::size_t capacity) : items_(std::make_unique<Item[]>(capacity)), capacity_(capacity) {}

    /// The producer's side: how many items fit now, at least.
    [[nodiscard]] std::size_t Room() const noexcept {
        return capacity_ - (tail_.load(std::memory_order_relaxed) - head_.load(std::memory_order_acquire));
    }
    /// The producer's side. Not more than Room().
    void Push(std::span<const Item> items) noexcept {
        const std::size_t tail = tail_.load(std::memory_order_relaxed);
        for (std::size_t i = 0; i < items.size(); ++i) items_[(tail + i) & (capacity_ - 1)] = items[i];
        tail_.store(tail + items.size(), std::memory_order_release);
    }
    /// The consumer's side: takes as many as are there and fit. Returns how many.
    std::size_t Pop(std::span<Item> items) noexcept {
        const std::size_t head = head_.load(std::memory_order_relaxed);
        const std::size_t count = std::min(items.size(), tail_.load(std::memory_order_acquire) - head);
        for (std::size_t i = 0; i < count; ++i) items[i] = items_[(head + i) & (capacity_ - 1)];
        head_.store(head + count, std::memory_order_release);
        return count;
    }

private:
    std::unique_ptr<Item[]> items_;
    std::size_t capacity_;
    std::atomic<std::size_t> head_{0};
    std::atomic<std::size_t> tail_{0};
};

}  // namespace host
