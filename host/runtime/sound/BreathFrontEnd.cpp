#include "runtime/sound/BreathFrontEnd.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace host {

namespace {

constexpr double kPi = 3.14159265358979323846;

constexpr double kHighPassHz = 60;
constexpr double kHighPassQ = 0.7071067811865476;  // Butterworth

// Wide enough for a tone that wanders, that glides to the next one or that falls silent within 25 ms.
constexpr double kNotchWidthHz = 70;
constexpr int kPartials = 3;
// The tone counts as heard when it is this part of the block's peak at least. Below that it cannot keep a breath alive
// by itself.
constexpr float kToneShare = 0.3F;
// What the notches take of a breath on average, at most: 1.5 dB.
constexpr float kMakeUp = 1.19F;

constexpr float kDip = 0.9F;        // of the usual peak; what is hardly softer than that is left alone
constexpr float kMostGain = 3.16F;  // 10 dB

float HighestOf(std::span<const float> frames, std::size_t channels) {
    float highest = 0;
    for (std::size_t i = 0; i < frames.size(); i += channels) highest = std::max(highest, frames[i]);
    return highest;
}

float LowestOf(std::span<const float> frames, std::size_t channels) {
    float lowest = 0;
    for (std::size_t i = 0; i < frames.size(); i += channels) lowest = std::min(lowest, frames[i]);
    return lowest;
}

}  // namespace

double BreathFrontEnd::Section::Pass(double x, std::size_t channel) {
    const double y = b0 * x + s1[channel];
    s1[channel] = b1 * x - a1 * y + s2[channel];
    s2[channel] = b2 * x - a2 * y;
    return y;
}

// Both from the analogue prototypes by the bilinear transform, as in R. Bristow-Johnson, "Cookbook formulae for audio
// EQ biquad filter coefficients".
BreathFrontEnd::Section BreathFrontEnd::MakeHighPass() {
    const double w = 2 * kPi * kHighPassHz / kPhoneRate;
    const double alpha = std::sin(w) / (2 * kHighPassQ);
    const double norm = 1 / (1 + alpha);
    const double side = (1 + std::cos(w)) / 2 * norm;
    return {side, -2 * side, side, -2 * std::cos(w) * norm, (1 - alpha) * norm};
}

BreathFrontEnd::Section BreathFrontEnd::MakeNotch(double hertz) {
    const double w = 2 * kPi * hertz / kPhoneRate;
    const double alpha = std::sin(w) * kNotchWidthHz / (2 * hertz);
    const double norm = 1 / (1 + alpha);
    const double middle = -2 * std::cos(w) * norm;
    return {norm, middle, norm, middle, (1 - alpha) * norm};
}

BreathFrontEnd::BreathFrontEnd(int channels)
    : channels_(static_cast<std::size_t>(channels)), highPass_(MakeHighPass()) {}

void BreathFrontEnd::SetOwnTones(std::span<const double> hertz) {
    const auto isOver = [&](const Notch& notch) {
        return std::find(hertz.begin(), hertz.end(), notch.hertz) == hertz.end();
    };
    notches_.erase(std::remove_if(notches_.begin(), notches_.end(), isOver), notches_.end());
    for (const double tone : hertz) {
        const auto isThis = [&](const Notch& notch) { return notch.hertz == tone; };
        if (std::any_of(notches_.begin(), notches_.end(), isThis)) continue;
        Notch notch{tone, {}};
        for (int partial = 1; partial <= kPartials && partial * tone < kPhoneRate / 2.0; ++partial) {
            notch.sections.push_back(MakeNotch(partial * tone));
        }
        notches_.push_back(std::move(notch));
    }
}

void BreathFrontEnd::Process(std::span<float> frames) {
    for (std::size_t i = 0; i < frames.size(); ++i) {
        frames[i] = static_cast<float>(highPass_.Pass(static_cast<double>(frames[i]), i % channels_));
    }
    while (!frames.empty()) {
        const std::span<float> block = frames.first(std::min(frames.size(), kBlockFrames * channels_));
        TakeOwnTonesOut(block);
        FillDip(block);
        frames = frames.subspan(block.size());
    }
}

void BreathFrontEnd::TakeOwnTonesOut(std::span<float> frames) {
    if (notches_.empty()) return;
    without_.assign(frames.begin(), frames.end());
    for (Notch& notch : notches_) {
        for (Section& section : notch.sections) {
            for (std::size_t i = 0; i < without_.size(); ++i) {
                without_[i] = static_cast<float>(section.Pass(static_cast<double>(without_[i]), i % channels_));
            }
        }
    }
    float tone = 0;
    for (std::size_t i = 0; i < frames.size(); i += channels_) tone = std::max(tone, frames[i] - without_[i]);
    if (tone < kToneShare * HighestOf(frames, channels_)) return;
    std::transform(without_.begin(), without_.end(), frames.begin(), [](float frame) { return kMakeUp * frame; });
}

void BreathFrontEnd::FillDip(std::span<float> frames) {
    const float usual = std::accumulate(peaks_.begin(), peaks_.end(), 0.0F) / static_cast<float>(kBlocksRemembered);
    const float high = HighestOf(frames, channels_);
    const float low = -LowestOf(frames, channels_);
    const float peak = std::max(high, low);
    if (kMostGain * peak < usual) {
        // The breath has ended, and what rings on after it is not to be raised.
        peaks_.fill(0);
        return;
    }
    peaks_[nextPeak_] = std::min(peak, 1.0F);
    nextPeak_ = (nextPeak_ + 1) % kBlocksRemembered;
    if (high >= kDip * usual) return;
    const float gain = std::max(usual / peak, 1.0F) * (low > high ? -1.0F : 1.0F);
    for (float& frame : frames) frame *= gain;
}

}  // namespace host
