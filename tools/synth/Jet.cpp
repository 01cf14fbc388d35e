#include "Jet.h"

#include "Loop.h"

#include <cmath>

namespace synth {
namespace {

// What the jet's own corner leaves of a harmonic.
double Followed(int harmonic) {
    const double r = harmonic / Jet::kCornerOfPitch;
    return 1.0 / std::hypot(1.0 - r * r, r / Jet::kCornerQuality);
}

// What that corner and a resonant high-pass of this quality leave of a harmonic, against the first: far above the
// resonance it passes 1, at it Q.
double Passed(int harmonic, double quality) {
    const double n = harmonic;
    return n * n / std::hypot(n * n - 1.0, n / quality) / quality * Followed(harmonic) / Followed(1);
}

// The harmonic's share of the jet's flow. The flow is even in the phase.
double Share(int harmonic, double offset, double swing) {
    constexpr int kSteps = 64;
    double sum = 0.0;
    for (int i = 0; i < kSteps; ++i) {
        const double phase = kPi * (i + 0.5) / kSteps;
        sum += std::tanh(offset - swing * std::cos(phase)) * std::cos(harmonic * phase);
    }
    return std::abs(sum);
}

double Decibels(double ratio) {
    return 20.0 * std::log10(ratio);
}

}  // namespace

Jet::Jet(double secondDb, double thirdDb, double chamberQuality) {
    constexpr double kStep = 0.02;
    constexpr double kMostOffset = 2.0;
    constexpr double kLeastSwing = 0.4;
    constexpr double kMostSwing = 5.0;
    double least = -1.0;
    for (double swing = kLeastSwing; swing < kMostSwing; swing += kStep) {
        for (double offset = kStep; offset < kMostOffset; offset += kStep) {
            const double first = Share(1, offset, swing);
            const double second = Decibels(Share(2, offset, swing) / first * Passed(2, chamberQuality)) - secondDb;
            const double third = Decibels(Share(3, offset, swing) / first * Passed(3, chamberQuality)) - thirdDb;
            const double miss = second * second + third * third;
            if (least < 0.0 || miss < least) {
                least = miss;
                swing_ = swing;
                offset_ = offset;
            }
        }
    }
}

double Jet::Flow(double phase, double force) const {
    return std::tanh(offset_ - swing_ * (1.0 + force) * std::cos(phase));
}

}  // namespace synth
