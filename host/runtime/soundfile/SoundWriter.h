#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "backend/Storage.h"

namespace host {

/// What a recording can be written as.
enum class SoundFormat { kWav, kFlac, kOggVorbis };

/// Whether this build of the program can write it.
[[nodiscard]] bool CanWrite(SoundFormat format);
/// The usual endings of those that it can write, for messages: ".wav, .flac or .ogg".
[[nodiscard]] std::string_view SoundEndings();
/// By the path's ending, whatever its case: .wav, .flac, .ogg or .oga; WAV where it has none. Empty for any other, and
/// for a format that cannot be written.
[[nodiscard]] std::optional<SoundFormat> SoundFormatOf(std::string_view path);

/// Writes a mono sound into a file, so that it can be played up to what was written a second ago, also when the program
/// dies. UI thread only.
class SoundWriter {
public:
    virtual ~SoundWriter() = default;

    /// Frames of -1..1; what lies beyond is clipped. False once the disk takes no more.
    virtual bool Write(std::span<const float> frames) = 0;
    /// Writes what is still held back and closes the file. False when something that was written is lost.
    virtual bool Close() = 0;
    /// Why something was lost.
    [[nodiscard]] virtual std::string Problem() const = 0;
};

/// `format` is one that can be written, `rate` frames a second, 8000..192000. Nothing is lost of what the file held
/// before the first Write.
[[nodiscard]] std::unique_ptr<SoundWriter> CreateSoundWriter(SoundFormat format, std::unique_ptr<OutputFile> file,
                                                             int rate);

}  // namespace host
