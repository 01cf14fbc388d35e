#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace host {

class Resampler;

/// Turns sound of any rate into what the phone's microphone delivers (PhoneFormat.h), piece by piece. What lies above
/// half the phone's rate is filtered out first. One thread at a time; not for a device's thread.
class PhoneConverter {
public:
    /// Null when `rate` cannot be converted. One channel is heard on both sides; of more than two, the first two.
    [[nodiscard]] static std::unique_ptr<PhoneConverter> Make(int rate, int channels);
    ~PhoneConverter();

    enum class Input { kGoesOn, kEndsHere };
    /// Appends to `bytes` what the interleaved `frames` give, whole frames. The filter keeps a few of them back until
    /// it is told that no more follow.
    void Convert(std::span<const float> frames, Input end, std::vector<std::uint8_t>& bytes);

    /// By how many bytes the result stays behind what was heard while it goes on.
    [[nodiscard]] static std::size_t KeptBackBytes(int rate, int channels);

private:
    explicit PhoneConverter(int channels);

    std::size_t channels_;
    std::unique_ptr<Resampler> resampler_;  ///< null when the rate is the phone's
    std::vector<float> waiting_;            ///< one or two channels, of the input's rate
    std::vector<float> converted_;
};

}  // namespace host
