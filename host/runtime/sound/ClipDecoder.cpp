#include "runtime/sound/ClipDecoder.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "runtime/sound/ToneComments.h"
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

    std::string fault;
    const ToneComments tone = ReadToneComments(reader.Comments(), reader.Frames(), fault);
    ClipShape shape;
    shape.takes = static_cast<std::uint32_t>(tone.takes.size()) + 1;
    shape.releaseFrames = static_cast<float>(tone.releaseSeconds.value_or(0) * rate);
    if (tone.pitchHz) shape.periodFrames = static_cast<float>(rate / *tone.pitchHz);
    if (reader.Rate() == rate) {
        shape.loopStart = tone.loopStart;
        shape.length = tone.loopStart + tone.loopLength;
    } else {
        const auto loopIn = static_cast<double>(tone.loopLength);
        const double loopOut = std::max(1.0, std::round(loopIn * rate / reader.Rate()));
        decoder->ratio_ = loopOut / loopIn;
        const std::size_t reach = Resampler::ReachFrames(decoder->ratio_);
        shape.loopStart =
            static_cast<std::uint32_t>(std::ceil(tone.loopStart * decoder->ratio_) + static_cast<double>(reach));
        shape.length = static_cast<std::uint32_t>(loopOut) + shape.loopStart;
        decoder->beginningWanted_ =
            static_cast<std::size_t>(std::ceil(2 * static_cast<double>(reach) / decoder->ratio_)) + 1;
    }
    decoder->loopStart_ = tone.loopStart;
    decoder->pieces_.push_back({0, std::size_t{tone.loopStart} + tone.loopLength, shape.length});
    for (const std::uint32_t take : tone.takes) {
        decoder->pieces_.push_back({take, std::size_t{take} + tone.loopStart, shape.loopStart});
    }
    decoder->clip_ = std::make_shared<Clip>(shape, std::move(fault));
    decoder->needsResampler_ = reader.Rate() != rate;
    return decoder->StartNextPiece() ? std::move(decoder) : nullptr;
}

bool ClipDecoder::IsProvedWhole() const noexcept {
    return reader_->IsProvedWhole();
}

bool ClipDecoder::Advance(std::size_t frames) {
    const std::size_t goal = std::min(clip_->Length(), clip_->Ready() + frames);
    while (clip_->Ready() < goal) {
        if (clip_->Ready() == pieceEnd_ && !StartNextPiece()) return false;
        if (monoAt_ == mono_.size() && !ReadMore()) return false;
        if (!MakeMore(pieceEnd_ - clip_->Ready())) return false;
    }
    return !IsDone() || SkipTo(framesPromised_);
}

bool ClipDecoder::StartNextPiece() {
    mono_.clear();
    monoAt_ = 0;
    pieceEnd_ += pieces_[piece_++].framesOut;
    if (!needsResampler_) return true;
    resampler_ = Resampler::Make(1, ratio_);
    return resampler_ != nullptr;
}

// At most as many frames of the clip from what was read.
bool ClipDecoder::MakeMore(std::size_t most) {
    const std::span<const float> input = std::span<const float>(mono_).subspan(monoAt_);
    if (resampler_ != nullptr) {
        const auto progress = resampler_->Process(input, {clip_->UnreadyFrames(), most}, Resampler::Input::kGoesOn);
        if (progress.framesTaken == 0 && progress.framesMade == 0) return false;
        monoAt_ += progress.framesTaken;
        clip_->AddReady(progress.framesMade);
    } else {
        const std::size_t count = std::min(input.size(), most);
        std::copy_n(input.begin(), count, clip_->UnreadyFrames());
        monoAt_ += count;
        clip_->AddReady(count);
    }
    return true;
}

bool ClipDecoder::ReadMore() {
    const Piece& piece = pieces_[piece_ - 1];
    monoAt_ = 0;
    if (framesRead_ < piece.end) {
        if (!SkipTo(piece.begin)) return false;
        const auto channels = static_cast<std::size_t>(reader_->Channels());
        const std::size_t wanted = std::min(kFramesAtOnce, piece.end - framesRead_);
        const std::size_t got = reader_->Read({interleaved_.data(), wanted * channels});
        if (got < wanted) return false;
        TakeMono(got);
        if (piece_ == 1) KeepBeginning();
        framesRead_ += got;
        return true;
    }
    // Behind the end follows the beginning again, as often as it takes for a loop shorter than the filter.
    mono_ = beginning_;
    return !mono_.empty();
}

bool ClipDecoder::SkipTo(std::size_t frame) {
    const auto channels = static_cast<std::size_t>(reader_->Channels());
    while (framesRead_ < frame) {
        const std::size_t wanted = std::min(kFramesAtOnce, frame - framesRead_);
        if (reader_->Read({interleaved_.data(), wanted * channels}) < wanted) return false;
        framesRead_ += wanted;
    }
    return true;
}

// Of what was just read.
void ClipDecoder::KeepBeginning() {
    const std::size_t before = std::min(mono_.size(), loopStart_ - std::min(loopStart_, framesRead_));
    const std::size_t missing = std::min(beginningWanted_ - beginning_.size(), mono_.size() - before);
    const auto first = mono_.begin() + static_cast<std::ptrdiff_t>(before);
    beginning_.insert(beginning_.end(), first, first + static_cast<std::ptrdiff_t>(missing));
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
