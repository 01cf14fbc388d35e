#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace host {

/// Writes a 16-bit WAV file. Not for the audio thread.
class WavWriter {
public:
    /// Null when the file cannot be made.
    [[nodiscard]] static std::unique_ptr<WavWriter> Create(const std::string& path, int rate, int channels = 1);
    /// Completes the file.
    ~WavWriter();

    /// Whole interleaved frames; -1..1, what lies beyond is clipped. The file is a valid one whenever this has
    /// returned, should the program die. False once the disk takes no more.
    bool Write(std::span<const float> samples);

private:
    struct File;

    explicit WavWriter(std::unique_ptr<File> file);

    std::unique_ptr<File> file_;
};

}  // namespace host
