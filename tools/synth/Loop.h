#pragma once

#include <cmath>
#include <cstddef>
#include <vector>

namespace synth {

inline constexpr double kPi = 3.14159265358979323846;

// Frames a second of every recording.
inline constexpr double kRate = 44100.0;

// One lap of a sound that goes round for ever: the frame after the last is the first. Everything in this tool is worked
// out on such a circle, so that the repeat of a recording is continuous by construction and needs no cross-fade.
using Loop = std::vector<double>;

inline double Rms(const Loop& loop) {
    double sum = 0.0;
    for (const double x : loop) {
        sum += x * x;
    }
    return std::sqrt(sum / static_cast<double>(loop.size()));
}

inline double FromDecibels(double decibels) {
    return std::pow(10.0, decibels / 20.0);
}

}  // namespace synth
