#include "runtime/sound/PhoneConverter.h"

#include <algorithm>
#include <cmath>

#include "runtime/sound/PhoneFormat.h"
#include "runtime/soundfile/Resampler.h"

namespace host {

namespace {

constexpr std::size_t kFramesAtOnce = 2048;

std::uint8_t ToByte(float sample) {
    return static_cast<std::uint8_t>(kPhoneSilence + std::lrint(std::clamp(sample, -1.0F, 1.0F) * kPhoneFullScale));
}

}  // namespace

PhoneConverter::PhoneConverter(int rate, int channels)
    : rate_(rate), channels_(static_cast<std::size_t>(channels)), frontEnd_(std::min(channels, kPhoneChannels)) {}

PhoneConverter::~PhoneConverter() = default;

std::unique_ptr<PhoneConverter> PhoneConverter::Make(int rate, int channels) {
    std::unique_ptr<PhoneConverter> converter(new PhoneConverter(rate, channels));
    if (rate == kPhoneRate) return converter;
    converter->resampler_ = Resampler::Make(std::min(channels, kPhoneChannels), static_cast<double>(kPhoneRate) / rate);
    return converter->resampler_ == nullptr ? nullptr : std::move(converter);
}

void PhoneConverter::MakeUpForDelay() {
    const auto trial = Make(rate_, static_cast<int>(channels_));
    if (trial == nullptr) return;
    // A tenth of a second, which is twenty times what the filter reaches.
    constexpr int kTrials = 10;
    const std::vector<float> silence(static_cast<std::size_t>(rate_ / kTrials) * channels_);
    std::vector<std::uint8_t> bytes;
    trial->Convert(silence, Input::kGoesOn, bytes);
    const std::size_t heard = std::min<std::size_t>(channels_, kPhoneChannels);
    const std::size_t made = bytes.size() / kPhoneChannels * heard + trial->unfinished_.size();
    const std::size_t whole = std::size_t{kPhoneRate} / kTrials * heard;
    unfinished_.assign(whole - std::min(made, whole), 0.0F);
}

void PhoneConverter::Convert(std::span<const float> frames, Input end, std::vector<std::uint8_t>& bytes) {
    const std::size_t heard = std::min<std::size_t>(channels_, kPhoneChannels);
    for (std::size_t i = 0; i < frames.size(); i += channels_) {
        waiting_.insert(waiting_.end(), frames.begin() + static_cast<std::ptrdiff_t>(i),
                        frames.begin() + static_cast<std::ptrdiff_t>(i + heard));
    }
    if (resampler_ == nullptr) {
        unfinished_.insert(unfinished_.end(), waiting_.begin(), waiting_.end());
        waiting_.clear();
    } else {
        Resample(end);
    }

    const std::size_t blockSamples = kBlockFrames * heard;
    const std::size_t rest = end == Input::kEndsHere ? 0 : unfinished_.size() % blockSamples;
    const std::span<float> blocks = std::span<float>(unfinished_).first(unfinished_.size() - rest);
    frontEnd_.Process(blocks);
    for (std::size_t i = 0; i < blocks.size(); i += heard) {
        bytes.push_back(ToByte(blocks[i]));
        bytes.push_back(ToByte(blocks[i + heard - 1]));
    }
    unfinished_.erase(unfinished_.begin(), unfinished_.end() - static_cast<std::ptrdiff_t>(rest));
}

// From what waits to what is unfinished.
void PhoneConverter::Resample(Input end) {
    const std::size_t heard = std::min<std::size_t>(channels_, kPhoneChannels);
    converted_.resize(kFramesAtOnce * heard);
    std::span<const float> rest = waiting_;
    Resampler::Progress progress;
    do {
        progress = resampler_->Process(
            rest, converted_, end == Input::kEndsHere ? Resampler::Input::kEndsHere : Resampler::Input::kGoesOn);
        rest = rest.subspan(progress.framesTaken * heard);
        const auto made = converted_.begin() + static_cast<std::ptrdiff_t>(progress.framesMade * heard);
        unfinished_.insert(unfinished_.end(), converted_.begin(), made);
    } while (progress.framesMade > 0);
    waiting_.erase(waiting_.begin(), waiting_.end() - static_cast<std::ptrdiff_t>(rest.size()));
}

}  // namespace host
