#include "runtime/soundfile/WavWriter.h"

#include <sndfile.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace host {

struct WavWriter::File {
    explicit File(SNDFILE* opened) : handle(opened) {}
    ~File() { sf_close(handle); }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    SNDFILE* handle;
};

std::unique_ptr<WavWriter> WavWriter::Create(const std::string& path, int rate, int channels) {
    SF_INFO info{};
    info.samplerate = rate;
    info.channels = channels;
    info.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
    SNDFILE* handle = sf_open(path.c_str(), SFM_WRITE, &info);
    if (handle == nullptr) return nullptr;
    std::unique_ptr<WavWriter> writer(new WavWriter(std::make_unique<File>(handle)));
    sf_command(handle, SFC_UPDATE_HEADER_NOW, nullptr, 0);
    return writer;
}

WavWriter::WavWriter(std::unique_ptr<File> file) : file_(std::move(file)) {}

WavWriter::~WavWriter() = default;

bool WavWriter::Write(std::span<const float> samples) {
    constexpr float kFullScale = 32767;
    constexpr std::size_t kSamplesAtOnce = 4096;
    std::array<short, kSamplesAtOnce> converted;
    bool isWritten = true;
    while (!samples.empty()) {
        const std::size_t count = std::min(samples.size(), kSamplesAtOnce);
        std::transform(
            samples.begin(), samples.begin() + static_cast<std::ptrdiff_t>(count), converted.begin(),
            [](float sample) { return static_cast<short>(std::lrint(std::clamp(sample, -1.0F, 1.0F) * kFullScale)); });
        const auto items = static_cast<sf_count_t>(count);
        isWritten = sf_write_short(file_->handle, converted.data(), items) == items && isWritten;
        samples = samples.subspan(count);
    }
    sf_command(file_->handle, SFC_UPDATE_HEADER_NOW, nullptr, 0);
    return isWritten;
}

}  // namespace host
