#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "runtime/soundfile/SoundWriter.h"

namespace host {

/// A 16-bit WAV file, whose header tells all that is in it whenever a Write has returned.
class WavWriter final : public SoundWriter {
public:
    WavWriter(std::unique_ptr<OutputFile> file, int rate);

    bool Write(std::span<const float> frames) override;
    bool Close() override;
    [[nodiscard]] std::string Problem() const override;

private:
    bool WriteHeader();

    std::unique_ptr<OutputFile> file_;
    int rate_;
    std::uint32_t dataBytes_ = 0;
    bool isFull_ = false;
};

}  // namespace host
