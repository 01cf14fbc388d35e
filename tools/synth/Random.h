#pragma once

#include <cstdint>

namespace synth {

// A small generator of reproducible noise. The standard library's distributions are left to each implementation, so the
// same seed would sound different elsewhere; this one is integer arithmetic up to the last division.
// The generator is SplitMix64 (G. Steele, D. Lea, C. Flood, "Fast splittable pseudorandom number generators", OOPSLA
// 2014).
class Random {
public:
    explicit Random(std::uint64_t seed) : state_(seed) {}

    // Uniform in 0 (inclusive) to 1 (exclusive).
    double Uniform() {
        constexpr int kUnusedBits = 11;  // a double's mantissa holds 53 of the 64 bits
        constexpr double kScale = 1.0 / 9007199254740992.0;
        return static_cast<double>(Next() >> kUnusedBits) * kScale;
    }

    // Normal with mean 0 and variance 1, as the sum of twelve uniform numbers: their variances of 1/12 add up to 1, and
    // no logarithm of some mathematics library takes part.
    double Normal() {
        constexpr int kTerms = 12;
        double sum = -kTerms / 2.0;
        for (int i = 0; i < kTerms; ++i) {
            sum += Uniform();
        }
        return sum;
    }

private:
    std::uint64_t Next() {
        state_ += 0x9e3779b97f4a7c15U;
        std::uint64_t z = state_;
        z = (z ^ (z >> 30U)) * 0xbf58476d1ce4e5b9U;
        z = (z ^ (z >> 27U)) * 0x94d049bb133111ebU;
        return z ^ (z >> 31U);
    }

    std::uint64_t state_;
};

}  // namespace synth
