#include "runtime/sound/Turbulence.h"

#include <algorithm>
#include <cmath>

namespace host {

namespace {

constexpr int kHighestByte = 255;

// One-pole filters' coefficients, 1 - exp(-2 pi f / 8000): a low pass of 300 Hz, and of 35 Hz for what is taken away.
constexpr double kLowPass = 0.2099;
constexpr double kDriftPass = 0.0271;

}  // namespace

void Turbulence::SetLevel(double level) {
    // A breath that begins has its full strength within the first chunk.
    if (IsSilent()) next_ = kChunkFrames;
    level_ = std::clamp(level, 0.0, 1.0);
}

void Turbulence::AddTo(std::span<std::uint8_t> bytes) {
    if (IsSilent()) return;
    for (std::size_t i = 0; i < bytes.size(); i += kPhoneChannels) {
        const int breath = Next();
        for (std::uint8_t& byte : bytes.subspan(i, kPhoneChannels)) {
            byte = static_cast<std::uint8_t>(std::clamp(byte + breath, 0, kHighestByte));
        }
    }
}

int Turbulence::Next() {
    if (next_ == kChunkFrames) MakeChunk();
    return static_cast<int>(std::lround(chunk_[next_++] * level_ * kPhoneFullScale));
}

void Turbulence::MakeChunk() {
    next_ = 0;
    const double* strongest = chunk_.data();
    for (double& sample : chunk_) {
        // xorshift64: George Marsaglia, "Xorshift RNGs", Journal of Statistical Software 8 (14), 2003.
        random_ ^= random_ << 13U;
        random_ ^= random_ >> 7U;
        random_ ^= random_ << 17U;
        constexpr double kHalfRange = 9223372036854775808.0;
        const double white = static_cast<double>(random_) / kHalfRange - 1;
        low_ += kLowPass * (white - low_);
        drift_ += kDriftPass * (low_ - drift_);
        sample = low_ - drift_;
        if (std::abs(sample) > std::abs(*strongest)) strongest = &sample;
    }
    // Turned over where its strongest sample is a negative one, the chunk reaches the level above and stays within
    // below.
    const double extreme = *strongest;
    for (double& sample : chunk_) sample /= extreme;
}

}  // namespace host
