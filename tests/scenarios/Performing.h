#pragma once

#include <span>
#include <string>

// What performances of the instrument have in common, and recordings of them.

constexpr int kRate = 44100;
constexpr int kMasks = 16;
constexpr int kPlayMs = 3000;  // The splash is over by then.

inline std::span<const float> Between(std::span<const float> sound, double beginMs, double endMs) {
    const auto frame = [](double ms) { return static_cast<std::size_t>(ms * kRate / 1000); };
    return sound.subspan(frame(beginMs), frame(endMs) - frame(beginMs));
}

/// Covers the holes of `mask` and lifts the others, at a time.
inline std::string Finger(int ms, int mask) {
    std::string lines;
    for (const char* key : {"KeyR", "KeyU", "KeyF", "KeyJ"}) {
        lines += std::to_string(ms) + " key " + key + ((mask & 1) != 0 ? " press\n" : " release\n");
        mask >>= 1;
    }
    return lines;
}
