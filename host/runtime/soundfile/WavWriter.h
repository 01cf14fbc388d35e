#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "backend/Storage.h"

namespace host {

/// Writes a 16-bit mono WAV file. Not for the audio thread.
class WavWriter {
public:
    /// `rate` is frames a second.
    WavWriter(std::unique_ptr<OutputFile> file, int rate);

    /// Frames of -1..1; what lies beyond is clipped. The file is a valid one whenever this has returned, also when the
    /// program dies afterwards. False once the disk takes no more.
    bool Write(std::span<const float> frames);
    /// Closes the file. False when something that was written is lost.
    bool Close();
    /// Why something was lost.
    [[nodiscard]] std::string Problem() const;

private:
    bool WriteHeader();

    std::unique_ptr<OutputFile> file_;
    int rate_;
    std::uint32_t dataBytes_ = 0;
    bool isFull_ = false;
};

}  // namespace host
