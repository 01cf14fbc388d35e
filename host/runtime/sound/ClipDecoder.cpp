#include "runtime/sound/ClipDecoder.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "runtime/soundfile/Resampler.h"
#include "runtime/soundfile/SoundReader.h"

namespace host {

namespace {

constexpr std::int64_t kLongestSeconds = 60;
constexpr std::size_t kFramesAtOnce = 1024;

}  // namespace

ClipDecoder::ClipDecoder() = default;

ClipDecoder::~ClipDecoder() = default;

std::unique_ptr<ClipDecoder> ClipDecoder::Open(std::vector<std::byte> content, int rate) {
    std::unique_ptr<ClipDecoder> decoder(new ClipDecoder);
    std::string problem;
    decoder->reader_ = SoundReader::FromMemory(std::move(content), problem);
    if (decoder->reader_ == nullptr) return nullptr;
    const SoundReader& reader = *decoder->reader_;
    if (reader.Frames() > kLongestSeconds * reader.Rate()) return nullptr;
    decoder->framesPromised_ = static_cast<std::size_t>(reader.Frames());
    decoder->interleaved_.resize(kFramesAtOnce * static_cast<std::size_t>(reader.Channels()));
    if (reader.Rate() == rate) {
        decoder->clip_ = std::make_shared<Clip>(ClipShape{static_cast<std::uint32_t>(decoder->framesPromised_)});
        return decoder;
    }

    const auto framesIn = static_cast<double>(reader.Frames());
    const double framesOut = std::max(1.0, std::round(framesIn * rate / reader.Rate()));
    const double ratio = framesOut / framesIn;
    decoder->resampler_ = Resampler::Make(1, ratio);
    if (decoder->resampler_ == nullptr) return nullptr;
    const auto loopStart = static_cast<std::uint32_t>(Resampler::ReachFrames(ratio));
    decoder->beginningWanted_ = static_cast<std::size_t>(std::ceil(2 * static_cast<double>(loopStart) / ratio));
    decoder->clip_ = std::make_shared<Clip>(ClipShape{static_cast<std::uint32_t>(framesOut) + loopStart, loopStart});
    return decoder;
}

bool ClipDecoder::IsProvedWhole() const noexcept {
    return reader_->IsProvedWhole();
}

bool ClipDecoder::Advance(std::size_t frames) {
    const std::size_t goal = std::min(clip_->Length(), clip_->Ready() + frames);
    while (clip_->Ready() < goal) {
        if (monoAt_ == mono_.size() && !ReadMore()) return false;
        const std::size_t space = clip_->Length() - clip_->Ready();
        const std::span<const float> input = std::span<const float>(mono_).subspan(monoAt_);
        if (resampler_ != nullptr) {
            const auto progress =
                resampler_->Process(input, {clip_->UnreadyFrames(), space}, Resampler::Input::kGoesOn);
            if (progress.framesTaken == 0 && progress.framesMade == 0) return false;
            monoAt_ += progress.framesTaken;
            clip_->AddReady(progress.framesMade);
        } else {
            const std::size_t count = std::min(input.size(), space);
            std::copy_n(input.begin(), count, clip_->UnreadyFrames());
            monoAt_ += count;
            clip_->AddReady(count);
        }
    }
    return true;
}

bool ClipDecoder::ReadMore() {
    monoAt_ = 0;
    if (framesRead_ < framesPromised_) {
        const auto channels = static_cast<std::size_t>(reader_->Channels());
        const std::size_t wanted = std::min(kFramesAtOnce, framesPromised_ - framesRead_);
        const std::size_t got = reader_->Read({interleaved_.data(), wanted * channels});
        if (got < wanted) return false;
        framesRead_ += got;
        TakeMono(got);
        const std::size_t missing = std::min(beginningWanted_ - beginning_.size(), got);
        beginning_.insert(beginning_.end(), mono_.begin(), mono_.begin() + static_cast<std::ptrdiff_t>(missing));
        return true;
    }
    // Behind the end follows the beginning again, as often as it takes for a clip shorter than the filter.
    mono_ = beginning_;
    return !mono_.empty();
}

void ClipDecoder::TakeMono(std::size_t frames) {
    const auto channels = static_cast<std::size_t>(reader_->Channels());
    mono_.resize(frames);
    for (std::size_t i = 0; i < frames; ++i) {
        float sum = 0;
        for (std::size_t channel = 0; channel < channels; ++channel) sum += interleaved_[i * channels + channel];
        mono_[i] = sum / static_cast<float>(channels);
    }
}

}  // namespace host
