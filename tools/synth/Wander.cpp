#include "Wander.h"

#include <algorithm>
#include <cmath>
#include <complex>

namespace synth {
namespace {

// Standard deviations of the pitch, apart for drift and for the quicker tremor. What a listener takes for a living tone
// lies between 2 and 3 cents, of which about one is tremor.
constexpr double kSlowCents = 2.4;
constexpr double kQuickCents = 1.05;
constexpr double kQuickHz = 1.0;
constexpr double kQuickestHz = 8.0;

constexpr double kDecibels = 0.53;  // standard deviation of the level
constexpr double kTied = 0.57;      // its correlation with the pitch
constexpr double kBend = 0.8;       // standard deviations from which on the level yields: peaks cost loudness

// How long the player is steadier, before and behind the loop's beginning, and how much unsteadiness is left.
constexpr double kCalmBefore = 0.25;
constexpr double kCalmBehind = 0.15;
constexpr double kCalmEdge = 0.4;
constexpr double kCalmRest = 0.1;

double Product(const Loop& a, const Loop& b) {
    double sum = 0.0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        sum += a[i] * b[i];
    }
    return sum;
}

// Slow sines of equal strength, and quick ones that are weaker the faster they are.
Loop Drift(Random& random, std::size_t frames) {
    const double seconds = static_cast<double>(frames) / kRate;
    const int slow = static_cast<int>(kQuickHz * seconds);
    const int fastest = static_cast<int>(kQuickestHz * seconds);
    double quickSum = 0.0;
    for (int turns = slow + 1; turns <= fastest; ++turns) {
        quickSum += 1.0 / turns;
    }
    Loop drift(frames);
    for (int turns = 1; turns <= fastest; ++turns) {
        const double variance =
            turns <= slow ? kSlowCents * kSlowCents / slow : kQuickCents * kQuickCents / turns / quickSum;
        const std::complex<double> turn = std::polar(1.0, 2.0 * kPi * turns / static_cast<double>(frames));
        std::complex<double> sine = std::polar(std::sqrt(2.0 * variance), 2.0 * kPi * random.Uniform());
        for (double& x : drift) {
            x += sine.real();
            sine *= turn;
        }
    }
    return drift;
}

void Calm(Loop& loop) {
    const double seconds = static_cast<double>(loop.size()) / kRate;
    double sum = 0.0;
    for (std::size_t i = 0; i < loop.size(); ++i) {
        const double behind = static_cast<double>(i) / kRate - kCalmBehind;
        const double before = seconds - kCalmBefore - static_cast<double>(i) / kRate;
        const double away = std::clamp(std::min(behind, before) / kCalmEdge, 0.0, 1.0);
        loop[i] *= kCalmRest + (1.0 - kCalmRest) * (0.5 - 0.5 * std::cos(kPi * away));
        sum += loop[i];
    }
    for (double& x : loop) {
        x -= sum / static_cast<double>(loop.size());
    }
}

void ScaleTo(Loop& loop, double rms) {
    const double gain = rms / Rms(loop);
    for (double& x : loop) {
        x *= gain;
    }
}

}  // namespace

Wander::Wander(Random& random, std::size_t frames) : cents_(Drift(random, frames)), decibels_(frames) {
    Loop free = Drift(random, frames);
    Calm(cents_);
    Calm(free);
    // What the level does beside the pitch has nothing to do with it: its part along the pitch's course is taken out.
    const double along = Product(free, cents_) / Product(cents_, cents_);
    for (std::size_t i = 0; i < frames; ++i) {
        free[i] -= along * cents_[i];
    }
    const double tied = kTied / Rms(cents_);
    const double own = std::sqrt(1.0 - kTied * kTied) / Rms(free);
    for (std::size_t i = 0; i < frames; ++i) {
        decibels_[i] = std::tanh((tied * cents_[i] + own * free[i]) / kBend);
    }
    ScaleTo(decibels_, kDecibels);
    double sum = 0.0;
    for (const double cents : cents_) {
        integral_.push_back(sum);
        sum += cents / kRate;
    }
}

}  // namespace synth
