#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

#include "runtime/sound/PhoneFormat.h"

namespace host {

/// What lies between a microphone and the phone's blocks, as a phone's own analogue side and gain control do: it makes
/// a breath that is blown steadily come out steadily. It belongs to devices and to recordings of them, not to bytes
/// that are the phone's already. One thread at a time.
///
/// - What lies below the breath's band goes: wind on the capsule pushes the membrane so far that whole blocks lie below
///   silence, and only what lies above it counts as breath.
/// - While a breath lasts, a block that falls short of the latest ones is turned over where its strong side is the
///   negative one, and raised by at most 10 dB. A breath that ends falls by more than that, and is not held up.
/// - The tone of the instrument's own speaker, where the microphone hears much of it, is taken out.
class BreathFrontEnd {
public:
    /// `channels`, one or two, are interleaved.
    explicit BreathFrontEnd(int channels);

    /// The tones, in hertz, that the microphone may hear from the speaker; none at first.
    void SetOwnTones(std::span<const double> hertz);
    /// The next frames of the phone's rate, -1..1, changed in place: whole blocks of them, or the last ones.
    void Process(std::span<float> frames);

private:
    // A filter of second order.
    struct Section {
        double b0;
        double b1;
        double b2;
        double a1;
        double a2;
        std::array<double, kPhoneChannels> s1{};
        std::array<double, kPhoneChannels> s2{};

        [[nodiscard]] double Pass(double x, std::size_t channel);
    };

    // What takes one tone and its partials out.
    struct Notch {
        double hertz;
        std::vector<Section> sections;
    };

    [[nodiscard]] static Section MakeHighPass();
    [[nodiscard]] static Section MakeNotch(double hertz);
    void TakeOwnTonesOut(std::span<float> frames);
    void FillDip(std::span<float> frames);

    std::size_t channels_;
    Section highPass_;
    std::vector<Notch> notches_;
    std::vector<float> without_;  ///< the block without the own tones
    static constexpr std::size_t kBlocksRemembered = 12;
    std::array<float, kBlocksRemembered> peaks_{};  ///< of the latest blocks
    std::size_t nextPeak_ = 0;
};

}  // namespace host
