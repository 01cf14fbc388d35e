#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace host {

class Resampler;
class SoundReader;

/// A sound file as the simulated microphone hears it: unsigned 8-bit stereo at 8000 Hz, read and converted as it goes.
/// UI thread only.
class BreathFile {
public:
    /// Null with one line in `problem` that names the file when it is missing, not whole or longer than an hour.
    [[nodiscard]] static std::unique_ptr<BreathFile> Open(const std::string& path, std::string& problem);
    ~BreathFile();

    /// The next bytes, whole frames. Behind the file's end there is silence.
    void Read(std::span<std::uint8_t> bytes);
    void Skip(std::uint64_t frames);

private:
    BreathFile();

    [[nodiscard]] bool ReadMore();

    std::unique_ptr<SoundReader> reader_;
    std::unique_ptr<Resampler> resampler_;  ///< null when the rate is the microphone's
    std::vector<float> interleaved_;
    std::vector<float> stereo_;  ///< of the file's rate
    std::size_t stereoAt_ = 0;
    std::vector<std::uint8_t> bytes_;  ///< converted and not read yet from `bytesAt_` on
    std::size_t bytesAt_ = 0;
    std::vector<float> resampled_;
    bool hasEnded_ = false;
};

}  // namespace host
