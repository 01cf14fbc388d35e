#include "Biquad.h"

#include <cmath>

namespace synth {

Biquad Biquad::HighPass(double hertz, double q) {
    return {hertz, q, 0.0, 0.0, 1.0};
}

Biquad Biquad::LowPass(double hertz, double q) {
    return {hertz, q, 1.0, 0.0, 0.0};
}

Biquad Biquad::BandPass(double hertz, double q) {
    return {hertz, q, 0.0, 1.0 / q, 0.0};
}

Biquad Biquad::HighShelf(double hertz, double q, double gain, double middle) {
    return {hertz, q, 1.0, middle / q, gain};
}

Biquad::Biquad(double hertz, double q, double b0, double b1, double b2) {
    // s = (1 - z^-1) / (k (1 + z^-1))
    const double k = std::tan(kPi * hertz / kRate);
    const double norm = k * k + k / q + 1.0;
    b_[0] = (b0 * k * k + b1 * k + b2) / norm;
    b_[1] = 2.0 * (b0 * k * k - b2) / norm;
    b_[2] = (b0 * k * k - b1 * k + b2) / norm;
    a_[0] = 1.0;
    a_[1] = 2.0 * (k * k - 1.0) / norm;
    a_[2] = (k * k - k / q + 1.0) / norm;
}

Loop Biquad::RunAround(const Loop& loop) const {
    return RunLaps(loop, 2);
}

Loop Biquad::Run(const Loop& sound) const {
    return RunLaps(sound, 1);
}

Loop Biquad::RunLaps(const Loop& loop, int laps) const {
    Loop out(loop.size());
    double s1 = 0.0;
    double s2 = 0.0;
    for (int lap = 0; lap < laps; ++lap) {
        for (std::size_t i = 0; i < loop.size(); ++i) {
            const double x = loop[i];
            const double y = b_[0] * x + s1;
            s1 = b_[1] * x - a_[1] * y + s2;
            s2 = b_[2] * x - a_[2] * y;
            out[i] = y;
        }
    }
    return out;
}

}  // namespace synth
