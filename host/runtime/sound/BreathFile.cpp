#include "runtime/sound/BreathFile.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "backend/Microphone.h"
#include "runtime/soundfile/Resampler.h"
#include "runtime/soundfile/SoundReader.h"

namespace host {

namespace {

constexpr std::int64_t kLongestSeconds = 3600;
constexpr std::size_t kFramesAtOnce = 2048;
constexpr std::size_t kChannels = 2;
constexpr std::uint8_t kSilence = 128;
constexpr float kFullScale = 127;

std::uint8_t ToByte(float sample) {
    return static_cast<std::uint8_t>(kSilence + std::lrint(std::clamp(sample, -1.0F, 1.0F) * kFullScale));
}

bool DecodesToItsEnd(const std::string& path) {
    std::string problem;
    const auto reader = SoundReader::FromFile(path, problem);
    if (reader == nullptr) return false;
    std::vector<float> samples(kFramesAtOnce * static_cast<std::size_t>(reader->Channels()));
    std::int64_t frames = 0;
    while (const std::size_t got = reader->Read(samples)) frames += static_cast<std::int64_t>(got);
    return frames == reader->Frames();
}

}  // namespace

BreathFile::BreathFile() = default;

BreathFile::~BreathFile() = default;

std::unique_ptr<BreathFile> BreathFile::Open(const std::string& path, std::string& problem) {
    std::unique_ptr<BreathFile> file(new BreathFile);
    std::string fault;
    file->reader_ = SoundReader::FromFile(path, fault);
    if (file->reader_ != nullptr) {
        const SoundReader& reader = *file->reader_;
        const MicrophoneFormat format;
        if (reader.Rate() != format.rate) {
            file->resampler_ =
                Resampler::Make(kChannels, static_cast<double>(format.rate) / static_cast<double>(reader.Rate()));
        }
        if (reader.Frames() > kLongestSeconds * reader.Rate()) {
            fault = "it is longer than an hour";
        } else if (reader.Rate() != format.rate && file->resampler_ == nullptr) {
            fault = "its rate cannot be converted";
        } else if (!reader.IsProvedWhole() && !DecodesToItsEnd(path)) {
            fault = "it does not decode to its end";
        }
    }
    if (!fault.empty()) {
        problem = path + ": " + fault;
        return nullptr;
    }
    return file;
}

void BreathFile::Read(std::span<std::uint8_t> bytes) {
    while (!bytes.empty()) {
        if (bytesAt_ == bytes_.size() && !ReadMore()) {
            std::fill(bytes.begin(), bytes.end(), kSilence);
            return;
        }
        const std::size_t count = std::min(bytes.size(), bytes_.size() - bytesAt_);
        std::copy_n(bytes_.begin() + static_cast<std::ptrdiff_t>(bytesAt_), count, bytes.begin());
        bytesAt_ += count;
        bytes = bytes.subspan(count);
    }
}

void BreathFile::Skip(std::uint64_t frames) {
    std::array<std::uint8_t, kFramesAtOnce * kChannels> passedOver;
    while (frames > 0 && !hasEnded_) {
        const std::uint64_t count = std::min<std::uint64_t>(frames, kFramesAtOnce);
        Read({passedOver.data(), static_cast<std::size_t>(count) * kChannels});
        frames -= count;
    }
}

bool BreathFile::ReadMore() {
    bytes_.clear();
    bytesAt_ = 0;
    const auto channels = static_cast<std::size_t>(reader_->Channels());
    while (bytes_.empty() && !hasEnded_) {
        if (reader_->IsUnsigned8Bit() && channels == kChannels && resampler_ == nullptr) {
            bytes_.resize(kFramesAtOnce * kChannels);
            bytes_.resize(reader_->ReadBytes(bytes_) * kChannels);
            hasEnded_ = bytes_.empty();
            return !hasEnded_;
        }
        bool isAtEnd = false;
        if (stereoAt_ == stereo_.size()) {
            interleaved_.resize(kFramesAtOnce * channels);
            const std::size_t frames = reader_->Read(interleaved_);
            isAtEnd = frames == 0;
            stereo_.resize(frames * kChannels);
            stereoAt_ = 0;
            // One channel is heard on both sides; of more than two, the first two.
            for (std::size_t i = 0; i < frames; ++i) {
                stereo_[i * kChannels] = interleaved_[i * channels];
                stereo_[i * kChannels + 1] = interleaved_[i * channels + (channels > 1 ? 1 : 0)];
            }
        }
        const std::span<const float> input = std::span<const float>(stereo_).subspan(stereoAt_);
        if (resampler_ == nullptr) {
            std::transform(input.begin(), input.end(), std::back_inserter(bytes_), ToByte);
            stereoAt_ = stereo_.size();
            hasEnded_ = isAtEnd;
            continue;
        }
        resampled_.resize(kFramesAtOnce * kChannels);
        const auto progress =
            resampler_->Process(input, resampled_, isAtEnd ? Resampler::Input::kEndsHere : Resampler::Input::kGoesOn);
        stereoAt_ += progress.framesTaken * kChannels;
        std::transform(resampled_.begin(),
                       resampled_.begin() + static_cast<std::ptrdiff_t>(progress.framesMade * kChannels),
                       std::back_inserter(bytes_), ToByte);
        hasEnded_ = isAtEnd && progress.framesMade == 0;
    }
    return !bytes_.empty();
}

}  // namespace host
