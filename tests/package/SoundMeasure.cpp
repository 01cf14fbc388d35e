#include "SoundMeasure.h"

#include <ebur128.h>

#include <algorithm>
#include <cmath>
#include <memory>

#include "measure/Fourier.h"

namespace measure {
namespace {

constexpr double kPi = 3.14159265358979323846;

// Soft ends for a transform, so that what is cut off there does not spread over all frequencies.
double Faded(std::size_t i, std::size_t count, int rate) {
    constexpr double kFadeSeconds = 0.5;
    const double edge = (static_cast<double>(std::min(i, count - 1 - i)) + 0.5) / (kFadeSeconds * rate);
    return edge >= 1.0 ? 1.0 : 0.5 - 0.5 * std::cos(kPi * edge);
}

// How alike the window is to itself `lag` frames later, -1 to 1 (P. McLeod, G. Wyvill, "A smarter way to find pitch",
// 2005).
double Likeness(Samples window, std::size_t lag) {
    double product = 0.0;
    double energy = 1e-20;
    for (std::size_t i = 0; i + lag < window.size(); ++i) {
        const double a = window[i];
        const double b = window[i + lag];
        product += a * b;
        energy += a * a + b * b;
    }
    return 2.0 * product / energy;
}

// The phase of a frequency in a window.
Complex Demodulate(Samples window, double radiansAFrame) {
    Complex sum;
    for (std::size_t i = 0; i < window.size(); ++i) {
        sum += std::polar(Hann(i, window.size()) * static_cast<double>(window[i]),
                          -radiansAFrame * static_cast<double>(i));
    }
    return sum;
}

// Butterworth of second order by the bilinear transform, run forwards and then backwards.
template <typename Value>
void PassBothWays(std::vector<Value>& x, double cornerOfRate, bool isHighPass) {
    const double k = std::tan(kPi * cornerOfRate);
    const double norm = 1.0 / (1.0 + std::sqrt(2.0) * k + k * k);
    const double gain = isHighPass ? norm : k * k * norm;
    const double side = isHighPass ? -2.0 : 2.0;
    const double a1 = 2.0 * (k * k - 1.0) * norm;
    const double a2 = (1.0 - std::sqrt(2.0) * k + k * k) * norm;
    for (int way = 0; way < 2; ++way) {
        Value s1{};
        Value s2{};
        for (Value& each : x) {
            const Value in = each;
            each = gain * in + s1;
            s1 = gain * side * in - a1 * each + s2;
            s2 = gain * in - a2 * each;
        }
        std::reverse(x.begin(), x.end());
    }
}

std::vector<float> Filter(Samples samples, double cornerOfRate, bool isHighPass) {
    std::vector<double> x(samples.begin(), samples.end());
    PassBothWays(x, cornerOfRate, isHighPass);
    return {x.begin(), x.end()};
}

std::unique_ptr<ebur128_state, void (*)(ebur128_state*)> Meter(Samples samples, int rate, int mode) {
    ebur128_state* state = ebur128_init(1, static_cast<unsigned long>(rate), mode);
    ebur128_add_frames_float(state, samples.data(), samples.size());
    return {state, [](ebur128_state* done) { ebur128_destroy(&done); }};
}

}  // namespace

double NoteHz(int octave, int semitone) {
    return 440.0 * std::exp2((octave - 4) + (semitone - 9) / 12.0);
}

double Cents(double hz, double reference) {
    return 1200.0 * std::log2(hz / reference);
}

std::optional<double> PitchHz(Samples window, int rate) {
    constexpr double kLowestHz = 100.0;
    constexpr double kHighestHz = 2000.0;
    constexpr double kLeastLikeness = 0.8;
    constexpr double kNearlyBest = 0.95;  // of the best; the shortest such period is the fundamental's
    const auto shortest = static_cast<std::size_t>(rate / kHighestHz);
    const auto longest = static_cast<std::size_t>(rate / kLowestHz);
    if (window.size() < 4 * longest) return std::nullopt;

    std::vector<double> likeness(longest + 2);
    for (std::size_t lag = shortest - 1; lag < likeness.size(); ++lag) {
        likeness[lag] = Likeness(window.first(4 * longest), lag);
    }
    const double best = *std::max_element(likeness.begin() + static_cast<std::ptrdiff_t>(shortest), likeness.end());
    std::size_t lag = shortest;
    while (lag <= longest && !(likeness[lag] >= kNearlyBest * best && likeness[lag] >= likeness[lag - 1] &&
                               likeness[lag] >= likeness[lag + 1])) {
        ++lag;
    }
    if (lag > longest || best < kLeastLikeness) return std::nullopt;
    const double bend = likeness[lag - 1] - 2.0 * likeness[lag] + likeness[lag + 1];
    const double shift = bend < 0.0 ? 0.5 * (likeness[lag - 1] - likeness[lag + 1]) / bend : 0.0;

    // The phase's advance between two overlapping views tells the rest.
    const double coarse = 2.0 * kPi / (static_cast<double>(lag) + shift);
    const std::size_t hop = window.size() / 4;
    const Complex before = Demodulate(window.first(window.size() - hop), coarse);
    const Complex after = Demodulate(window.subspan(hop), coarse) * std::polar(1.0, -coarse * static_cast<double>(hop));
    const double fine = coarse + std::arg(after * std::conj(before)) / static_cast<double>(hop);
    return fine * rate / (2.0 * kPi);
}

double RmsDb(Samples window) {
    double sum = 0.0;
    for (const float x : window) sum += static_cast<double>(x) * static_cast<double>(x);
    return sum > 0.0 ? 10.0 * std::log10(sum / static_cast<double>(window.size())) : kSilenceDb;
}

std::vector<double> RmsDbWindows(Samples samples, std::size_t windowFrames) {
    std::vector<double> levels;
    for (std::size_t at = 0; at + windowFrames <= samples.size(); at += windowFrames) {
        levels.push_back(RmsDb(samples.subspan(at, windowFrames)));
    }
    return levels;
}

double LargestStep(Samples samples) {
    float largest = 0.0F;
    for (std::size_t i = 1; i < samples.size(); ++i) largest = std::max(largest, std::abs(samples[i] - samples[i - 1]));
    return static_cast<double>(largest);
}

std::optional<std::size_t> Onset(Samples samples, float level) {
    const auto first = std::find_if(samples.begin(), samples.end(), [level](float x) { return std::abs(x) > level; });
    return first == samples.end() ? std::nullopt : std::optional(static_cast<std::size_t>(first - samples.begin()));
}

std::vector<Gap> FindGaps(Samples samples, float level, std::size_t leastFrames) {
    std::vector<Gap> gaps;
    for (std::size_t at = 0; at <= samples.size();) {
        const std::size_t quiet = Onset(samples.subspan(at), level).value_or(samples.size() - at);
        if (quiet > 0 && quiet >= leastFrames) gaps.push_back({at, quiet});
        at += quiet + 1;
    }
    return gaps;
}

Course Follow(Samples samples, int rate, double hz, double bandwidthHz, double pitchMs) {
    std::vector<Complex> x(samples.size());
    const Complex turn = std::polar(1.0, -2.0 * kPi * hz / rate);
    Complex carrier = 1.0;
    for (std::size_t i = 0; i < x.size(); ++i) {
        x[i] = 2.0 * static_cast<double>(samples[i]) * carrier;
        carrier *= turn;
    }
    PassBothWays(x, bandwidthHz / 2.0 / rate, false);

    Course course;
    const double framesAMs = rate / 1000.0;
    const auto half = static_cast<std::size_t>(pitchMs * framesAMs / 2.0);
    for (double at = 0.0; at < static_cast<double>(x.size()); at += Course::kStepMs * framesAMs) {
        const auto frame = static_cast<std::size_t>(at);
        course.levelDb.push_back(20.0 * std::log10(std::abs(x[frame]) + 1e-10));
        const std::size_t from = frame - std::min(frame, half);
        const std::size_t to = std::min(frame + half, x.size() - 1);
        double radians = 0.0;
        for (std::size_t i = from; i < to; i += half / 2) {
            const std::size_t next = std::min(i + half / 2, to);
            radians += std::arg(x[next] * std::conj(x[i]));
        }
        const double off = radians / (2.0 * kPi) * rate / static_cast<double>(to - from);
        course.cents.push_back(Cents(std::max(1.0, hz + off), hz));
    }
    return course;
}

std::vector<float> Above(Samples samples, int rate, double hz) {
    return Filter(samples, hz / rate, true);
}

std::vector<float> Below(Samples samples, int rate, double hz) {
    return Filter(samples, hz / rate, false);
}

double Loudness(Samples samples, int rate) {
    double loudness = 0.0;
    ebur128_loudness_global(Meter(samples, rate, EBUR128_MODE_I).get(), &loudness);
    return loudness;
}

double TruePeakDb(Samples samples, int rate) {
    double peak = 0.0;
    ebur128_true_peak(Meter(samples, rate, EBUR128_MODE_TRUE_PEAK).get(), 0, &peak);
    return peak > 0.0 ? 20.0 * std::log10(peak) : kSilenceDb;
}

Spectrum::Spectrum(Samples samples, int rate) : frames_(samples.size()), rate_(rate) {
    // Twice the length, so that a correlation does not wrap around.
    std::size_t size = 1;
    while (size < 2 * frames_) size *= 2;
    std::vector<Complex> x(size);
    for (std::size_t i = 0; i < frames_; ++i) x[i] = Faded(i, frames_, rate) * static_cast<double>(samples[i]);
    Transform(x);
    for (const Complex& bin : x) {
        power_.push_back(std::norm(bin));
        whole_ += power_.back();
    }
    binHz_ = static_cast<double>(rate) / static_cast<double>(size);
}

bool Spectrum::IsLine(std::size_t bin, double fundamental) const {
    constexpr double kHalfWidthHz = 6.0;
    const double hz = binHz_ * static_cast<double>(std::min(bin, power_.size() - bin));
    const double harmonic = std::max(1.0, std::round(hz / fundamental));
    return std::abs(hz - harmonic * fundamental) < kHalfWidthHz;
}

double Spectrum::LineDb(double hz) const {
    double sum = 0.0;
    for (std::size_t bin = 0; binHz_ * static_cast<double>(bin) < 1.5 * hz; ++bin) {
        sum += IsLine(bin, hz) ? 2.0 * power_[bin] : 0.0;
    }
    return 10.0 * std::log10(sum / whole_);
}

double Spectrum::BandDb(double fromHz, double toHz) const {
    double sum = 0.0;
    for (auto bin = static_cast<std::size_t>(fromHz / binHz_); binHz_ * static_cast<double>(bin) < toHz; ++bin) {
        sum += 2.0 * power_[bin];
    }
    return 10.0 * std::log10(sum / whole_);
}

double Spectrum::NoiseDb(double fundamental) const {
    double sum = 0.0;
    for (std::size_t bin = 0; bin < power_.size(); ++bin) sum += IsLine(bin, fundamental) ? 0.0 : power_[bin];
    return 10.0 * std::log10(sum / whole_);
}

double Spectrum::NoiseRepetition(double fundamental, double lowestHz, double leastSeconds) const {
    // The transform of the power is the correlation. It falls with the overlap, also where everything repeats.
    std::vector<Complex> noise(power_.size());
    for (std::size_t bin = 0; bin < power_.size(); ++bin) {
        const double hz = binHz_ * static_cast<double>(std::min(bin, power_.size() - bin));
        noise[bin] = hz < lowestHz || IsLine(bin, fundamental) ? 0.0 : power_[bin];
    }
    Transform(noise);

    double largest = 0.0;
    const auto margin = static_cast<std::size_t>(leastSeconds * rate_);
    for (std::size_t lag = margin; lag + margin < frames_; ++lag) {
        const double overlap = static_cast<double>(frames_ - lag) / static_cast<double>(frames_);
        largest = std::max(largest, std::abs(noise[lag].real()) / noise[0].real() / overlap);
    }
    return largest;
}

}  // namespace measure
