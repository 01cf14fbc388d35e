#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace host {

/// The microphone's unit: 160 stereo frames, 20 ms at 8000 Hz. It is the smallest at which a steady breath as soft as
/// the program hears does not flicker (docs: simulated with low-passed noise from 35 Hz up).
inline constexpr std::size_t kBlockBytes = 320;
using Block = std::array<std::uint8_t, kBlockBytes>;

/// Carries blocks from the microphone's thread to the UI thread without locks; the newest blocks overwrite the oldest
/// ones, read or not. Each slot is a sequence lock whose words are atomics, so that reading a slot that is being
/// overwritten is noticed instead of being a race (Hans-J. Boehm, "Can Seqlocks Get Along With Programming Language
/// Memory Models?", 2012).
class BlockRing {
public:
    /// The microphone's thread.
    void Write(const Block& block) noexcept {
        const std::uint64_t index = written_.load(std::memory_order_relaxed);
        Slot& slot = slots_[index % kSlots];
        slot.version.store(kNoVersion, std::memory_order_relaxed);
        for (std::size_t i = 0; i < kWords; ++i) {
            std::uint64_t word = 0;
            std::memcpy(&word, block.data() + i * sizeof word, sizeof word);
            slot.words[i].store(word, std::memory_order_release);
        }
        slot.version.store(index, std::memory_order_release);
        written_.store(index + 1, std::memory_order_release);
    }

    /// Blocks written so far. UI thread.
    [[nodiscard]] std::uint64_t Written() const noexcept { return written_.load(std::memory_order_acquire); }
    /// UI thread: block number `index`; false when it has been overwritten.
    [[nodiscard]] bool Read(std::uint64_t index, Block& block) const noexcept {
        const Slot& slot = slots_[index % kSlots];
        if (slot.version.load(std::memory_order_acquire) != index) return false;
        for (std::size_t i = 0; i < kWords; ++i) {
            const std::uint64_t word = slot.words[i].load(std::memory_order_acquire);
            std::memcpy(block.data() + i * sizeof word, &word, sizeof word);
        }
        return slot.version.load(std::memory_order_relaxed) == index;
    }

private:
    static constexpr std::size_t kSlots = 8;
    static constexpr std::size_t kWords = kBlockBytes / sizeof(std::uint64_t);
    static constexpr std::uint64_t kNoVersion = UINT64_MAX;

    struct Slot {
        std::atomic<std::uint64_t> version{kNoVersion};
        std::array<std::atomic<std::uint64_t>, kWords> words{};
    };

    std::array<Slot, kSlots> slots_;
    std::atomic<std::uint64_t> written_{0};
};

}  // namespace host
