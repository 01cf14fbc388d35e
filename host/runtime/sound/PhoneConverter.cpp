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

PhoneConverter::PhoneConverter(int channels) : channels_(static_cast<std::size_t>(channels)) {}

PhoneConverter::~PhoneConverter() = default;

std::unique_ptr<PhoneConverter> PhoneConverter::Make(int rate, int channels) {
    std::unique_ptr<PhoneConverter> converter(new PhoneConverter(channels));
    if (rate == kPhoneRate) return converter;
    converter->resampler_ = Resampler::Make(std::min(channels, kPhoneChannels), static_cast<double>(kPhoneRate) / rate);
    return converter->resampler_ == nullptr ? nullptr : std::move(converter);
}

std::size_t PhoneConverter::KeptBackBytes(int rate, int channels) {
    const auto trial = Make(rate, channels);
    if (trial == nullptr) return 0;
    // A tenth of a second, which is twenty times what the filter reaches.
    constexpr int kTrials = 10;
    const std::vector<float> silence(static_cast<std::size_t>(rate / kTrials * channels));
    std::vector<std::uint8_t> bytes;
    trial->Convert(silence, Input::kGoesOn, bytes);
    const std::size_t whole = std::size_t{kPhoneRate} / kTrials * kPhoneChannels;
    return whole - std::min(bytes.size(), whole);
}

void PhoneConverter::Convert(std::span<const float> frames, Input end, std::vector<std::uint8_t>& bytes) {
    const std::size_t heard = std::min<std::size_t>(channels_, kPhoneChannels);
    const auto append = [&](std::span<const float> samples) {
        for (std::size_t i = 0; i < samples.size(); i += heard) {
            bytes.push_back(ToByte(samples[i]));
            bytes.push_back(ToByte(samples[i + heard - 1]));
        }
    };
    for (std::size_t i = 0; i < frames.size(); i += channels_) {
        waiting_.insert(waiting_.end(), frames.begin() + static_cast<std::ptrdiff_t>(i),
                        frames.begin() + static_cast<std::ptrdiff_t>(i + heard));
    }
    if (resampler_ == nullptr) {
        append(waiting_);
        waiting_.clear();
        return;
    }
    converted_.resize(kFramesAtOnce * heard);
    std::span<const float> rest = waiting_;
    Resampler::Progress progress;
    do {
        progress = resampler_->Process(
            rest, converted_, end == Input::kEndsHere ? Resampler::Input::kEndsHere : Resampler::Input::kGoesOn);
        rest = rest.subspan(progress.framesTaken * heard);
        append(std::span<const float>(converted_).first(progress.framesMade * heard));
    } while (progress.framesMade > 0);
    waiting_.erase(waiting_.begin(), waiting_.end() - static_cast<std::ptrdiff_t>(rest.size()));
}

}  // namespace host
