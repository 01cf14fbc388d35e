#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace host {

class ByteSource;
class InputFile;

/// Decodes a WAV or Ogg Vorbis file piece by piece. Opening refuses what is seen not to be whole (see Framing.h). One
/// thread at a time; not for the audio thread.
class SoundReader {
public:
    /// The library that decodes, with its version.
    [[nodiscard]] static std::string Library();

    /// Null with what is wrong ("it is empty") in `problem`.
    [[nodiscard]] static std::unique_ptr<SoundReader> FromMemory(std::vector<std::byte> content, std::string& problem);
    [[nodiscard]] static std::unique_ptr<SoundReader> FromFile(std::unique_ptr<InputFile> file, std::string& problem);
    ~SoundReader();

    /// Frames a second; at least 1.
    [[nodiscard]] int Rate() const noexcept;
    [[nodiscard]] int Channels() const noexcept;
    /// What the file promises; at least 1.
    [[nodiscard]] std::int64_t Frames() const noexcept;
    [[nodiscard]] bool IsUnsigned8Bit() const noexcept;
    /// True when the file is known to decode to its end without having been decoded.
    [[nodiscard]] bool IsProvedWhole() const noexcept;
    /// "NAME=value" each; none but in an Ogg file.
    [[nodiscard]] const std::vector<std::string>& Comments() const noexcept;

    /// Decodes the next frames into `samples`, interleaved, -1..1 (a loud file may exceed it), never infinite or not a
    /// number. Returns the whole frames; fewer than fit only at the end or at a place that does not decode.
    std::size_t Read(std::span<float> samples);
    /// The same of an unsigned 8-bit file, its own bytes.
    std::size_t ReadBytes(std::span<std::uint8_t> samples);

private:
    struct Decoder;

    explicit SoundReader(std::unique_ptr<Decoder> decoder);
    [[nodiscard]] static std::unique_ptr<SoundReader> FromSource(std::unique_ptr<ByteSource> source,
                                                                 std::string& problem);

    std::unique_ptr<Decoder> decoder_;
};

}  // namespace host
