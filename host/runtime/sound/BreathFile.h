#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace host {

class Console;
class PhoneConverter;
class SoundReader;
class Storage;

/// A sound file as the simulated microphone hears it (PhoneFormat.h), read and converted as it goes. UI thread only.
class BreathFile {
public:
    /// Null with one line in `problem` that names the file when it cannot be read, is not whole or longer than an hour.
    /// `console` hears of a file that cannot be read to its end later, and must outlive this.
    [[nodiscard]] static std::unique_ptr<BreathFile> Open(const Storage& storage, Console& console,
                                                          const std::string& path, std::string& problem);
    ~BreathFile();

    /// The next bytes, whole frames. Behind the file's end there is silence.
    void Read(std::span<std::uint8_t> bytes);
    void Skip(std::uint64_t frames);

private:
    BreathFile(Console& console, std::string path);

    [[nodiscard]] bool ReadMore();
    void TakeEnd();

    Console& console_;
    std::string path_;
    std::unique_ptr<SoundReader> reader_;
    std::unique_ptr<PhoneConverter> converter_;  ///< null when the file's bytes are the phone's already
    std::vector<float> samples_;
    std::vector<std::uint8_t> bytes_;  ///< converted and not read yet from `bytesAt_` on
    std::size_t bytesAt_ = 0;
    std::int64_t framesRead_ = 0;  ///< of the file, at its own rate
    bool hasEnded_ = false;
};

}  // namespace host
