#pragma once

#include <memory>
#include <span>
#include <string>

#include "runtime/soundfile/SoundWriter.h"

namespace host {

/// A 16-bit FLAC file. Its header tells after every Write how many frames there are, less those of the encoder's
/// unfinished block of 4096.
class FlacWriter final : public SoundWriter {
public:
    FlacWriter(std::unique_ptr<OutputFile> file, int rate);
    ~FlacWriter() override;
    FlacWriter(const FlacWriter&) = delete;
    FlacWriter& operator=(const FlacWriter&) = delete;

    bool Write(std::span<const float> frames) override;
    bool Close() override;
    [[nodiscard]] std::string Problem() const override;

private:
    struct Encoder;

    const std::unique_ptr<Encoder> encoder_;
};

}  // namespace host
