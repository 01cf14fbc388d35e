#pragma once

#include <memory>
#include <span>
#include <string>

#include "runtime/soundfile/SoundWriter.h"

namespace host {

/// An Ogg Vorbis file of quality 6, about 100 kbit/s. A page is ended at every Write, so that it is never more than the
/// encoder's last block behind. It needs no Overwrite: a pipe can be written as well.
class VorbisWriter final : public SoundWriter {
public:
    VorbisWriter(std::unique_ptr<OutputFile> file, int rate);
    ~VorbisWriter() override;
    VorbisWriter(const VorbisWriter&) = delete;
    VorbisWriter& operator=(const VorbisWriter&) = delete;

    bool Write(std::span<const float> frames) override;
    bool Close() override;
    [[nodiscard]] std::string Problem() const override;

private:
    struct Encoder;

    /// Encodes what was handed over, and writes it in whole pages.
    void WritePages();

    const std::unique_ptr<Encoder> encoder_;
    const std::unique_ptr<OutputFile> file_;
    bool isFull_ = false;
};

}  // namespace host
