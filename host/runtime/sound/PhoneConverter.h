#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "runtime/sound/BreathFrontEnd.h"

namespace host {

class Resampler;

/// Turns sound of any rate into what the phone's microphone delivers (PhoneFormat.h), block by block. What lies above
/// half the phone's rate is filtered out first; then comes the front end. One thread at a time; not for a device's
/// thread.
class PhoneConverter {
public:
    /// Null when `rate` cannot be converted. One channel is heard on both sides; of more than two, the first two.
    [[nodiscard]] static std::unique_ptr<PhoneConverter> Make(int rate, int channels);
    ~PhoneConverter();

    enum class Input { kGoesOn, kEndsHere };
    /// Appends to `bytes` the whole blocks that the interleaved `frames` give. What fills no block is kept back until
    /// it is told that no more follow.
    void Convert(std::span<const float> frames, Input end, std::vector<std::uint8_t>& bytes);
    /// The frames that fill no block yet are forgotten: what comes next does not follow them.
    void DropUnfinished() noexcept { unfinished_.clear(); }
    /// See BreathFrontEnd.
    void SetOwnTones(std::span<const double> hertz) { frontEnd_.SetOwnTones(hertz); }

    /// Before the first Convert: begins with as much silence as the filter keeps back while it goes on. What is heard
    /// in the time of a block then completes one, so that no block waits for what comes after it.
    void MakeUpForDelay();

private:
    PhoneConverter(int rate, int channels);

    void Resample(Input end);

    int rate_;
    std::size_t channels_;
    std::unique_ptr<Resampler> resampler_;  ///< null when the rate is the phone's
    std::vector<float> waiting_;            ///< one or two channels, of the input's rate
    std::vector<float> converted_;
    std::vector<float> unfinished_;  ///< of the phone's rate, less than a block
    BreathFrontEnd frontEnd_;
};

}  // namespace host
