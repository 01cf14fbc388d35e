#include "backend/mix/Mix.h"

#include <algorithm>
#include <cmath>

namespace host {

namespace {

constexpr int kRampsPerSecond = 200;  // 5 ms each

constexpr double kPi = 3.14159265358979323846;

}  // namespace

Mix::Mix() : ramp_{0, 1} {}

void Mix::Prepare(int rate, int periodFrames) {
    const int rampFrames = std::max(1, rate / kRampsPerSecond);
    ramp_.resize(static_cast<std::size_t>(rampFrames) + 1);
    for (std::size_t i = 0; i < ramp_.size(); ++i) {
        ramp_[i] = static_cast<float>((1 - std::cos(kPi * static_cast<double>(i) / rampFrames)) / 2);
    }
    voiceCount_ = 0;
    isMuted_ = false;
    SetPeriod(periodFrames);
}

void Mix::Obey(const MixCommand& command, MixReporter& reporter) noexcept {
    switch (command.kind) {
        case MixCommand::Kind::kStart:
            return Start(command, reporter);
        case MixCommand::Kind::kClipReady:
            clips_[command.clip].ready = command.number;
            return;
        case MixCommand::Kind::kDropClip:
            clips_[command.clip] = {};
            static_cast<void>(reporter.Report({MixNews::Kind::kClipDropped, kNoVoice, command.clip}));
            return;
        case MixCommand::Kind::kMute:
        case MixCommand::Kind::kUnmute:
            isMuted_ = command.kind == MixCommand::Kind::kMute;
            return;
        default:
            break;
    }
    Voice* voice = Find(command.voice);
    if (voice == nullptr) return;
    switch (command.kind) {
        case MixCommand::Kind::kStop:
            voice->motion = Motion::kFalls;
            break;
        case MixCommand::Kind::kSetGain:
            voice->gainGoal = command.gain;
            voice->gainStep = (command.gain - voice->gain) / static_cast<float>(RampFrames());
            break;
        case MixCommand::Kind::kGrantRepeat:
            ++voice->endsGranted;
            break;
        case MixCommand::Kind::kFinish:
            voice->isFinishing = true;
            break;
        default:
            break;
    }
}

void Mix::Start(const MixCommand& command, MixReporter& reporter) noexcept {
    if (voiceCount_ == kMostVoices && !MakeRoom(reporter)) {
        static_cast<void>(reporter.Report({MixNews::Kind::kDone, command.voice}));
        return;
    }
    Voice& voice = voices_[voiceCount_++];
    voice = {};
    voice.number = command.voice;
    voice.clip = command.clip;
    voice.gain = command.gain;
    voice.gainGoal = command.gain;
    voice.endsReported = command.number;
}

// Ends the voice that has fallen furthest. False when all of them are wanted.
bool Mix::MakeRoom(MixReporter& reporter) noexcept {
    std::size_t quietest = kMostVoices;
    for (std::size_t i = 0; i < voiceCount_; ++i) {
        if (voices_[i].motion != Motion::kFalls) continue;
        if (quietest == kMostVoices || voices_[i].ramp < voices_[quietest].ramp) quietest = i;
    }
    if (quietest == kMostVoices || !reporter.Report({MixNews::Kind::kDone, voices_[quietest].number})) return false;
    Remove(quietest);
    return true;
}

Mix::Voice* Mix::Find(VoiceNumber number) noexcept {
    const auto end = voices_.begin() + static_cast<std::ptrdiff_t>(voiceCount_);
    const auto found = std::find_if(voices_.begin(), end, [&](const Voice& voice) { return voice.number == number; });
    return found == end ? nullptr : &*found;
}

void Mix::Remove(std::size_t index) noexcept {
    const auto removed = voices_.begin() + static_cast<std::ptrdiff_t>(index);
    std::move(removed + 1, voices_.begin() + static_cast<std::ptrdiff_t>(voiceCount_), removed);
    --voiceCount_;
}

void Mix::Render(std::span<float> frames, MixReporter& reporter) noexcept {
    std::fill(frames.begin(), frames.end(), 0.0F);
    if (voiceCount_ == 0) return;

    for (std::size_t i = voiceCount_; i-- > 0;) {
        Voice& voice = voices_[i];
        RenderVoice(voice, frames);
        if (IsOver(voice)) {
            if (reporter.Report({MixNews::Kind::kDone, voice.number})) Remove(i);
            continue;
        }
        const std::uint32_t ends = EndsDue(clips_[voice.clip].shape, voice.position, voice.endsPassed, leadFrames_);
        if (ends > voice.endsReported && reporter.Report({MixNews::Kind::kEnds, voice.number, voice.clip, ends})) {
            voice.endsReported = ends;
        }
    }
    if (isMuted_) std::fill(frames.begin(), frames.end(), 0.0F);
    for (float& frame : frames) frame = std::clamp(frame, -1.0F, 1.0F);
}

bool Mix::IsOver(const Voice& voice) const noexcept {
    const bool hasFallen = voice.motion == Motion::kFalls && voice.ramp == 0;
    return hasFallen || (IsLastPass(voice) && voice.position == clips_[voice.clip].shape.length);
}

bool Mix::IsSteady(const Voice& voice) const noexcept {
    return voice.motion == Motion::kRises && voice.ramp == RampFrames() && voice.gainStep == 0;
}

bool Mix::IsLastPass(const Voice& voice) noexcept {
    return voice.isFinishing && voice.endsPassed == voice.endsGranted;
}

void Mix::RenderVoice(Voice& voice, std::span<float> frames) noexcept {
    const Clip& clip = clips_[voice.clip];
    while (!frames.empty()) {
        if (voice.motion == Motion::kFalls && voice.ramp == 0) return;
        if (voice.position == clip.shape.length && !PassEnd(voice)) return;
        const std::uint32_t toEnd = clip.shape.length - voice.position;
        // The last pass: the ramp to silence ends with the clip, also where the tone has not risen to its full level.
        if (IsLastPass(voice) && toEnd <= voice.ramp) voice.motion = Motion::kFalls;
        // What is not decoded yet is silent. In practice the decoder is far ahead: a UI thread that stands still stops
        // all else too.
        const std::uint32_t ready = clip.ready - std::min(clip.ready, voice.position);
        std::size_t count = std::min<std::size_t>(frames.size(), std::min(toEnd, ready));
        if (count == 0) return;

        const float* from = clip.frames + voice.position;
        if (IsSteady(voice)) {
            if (IsLastPass(voice)) count = std::min<std::size_t>(count, toEnd - voice.ramp);
            for (std::size_t i = 0; i < count; ++i) frames[i] += voice.gain * from[i];
        } else {
            if (IsLastPass(voice) && voice.motion == Motion::kRises) {
                // Rising and falling meet halfway at the latest.
                count = std::min<std::size_t>(count, (toEnd - voice.ramp + 1) / 2);
            }
            count = RenderRamp(voice, from, frames.first(count));
        }
        voice.position += static_cast<std::uint32_t>(count);
        frames = frames.subspan(count);
    }
}

// Stops early where the ramp or the change of gain is over. Returns how many frames it rendered.
std::size_t Mix::RenderRamp(Voice& voice, const float* from, std::span<float> frames) noexcept {
    for (std::size_t i = 0; i < frames.size(); ++i) {
        if (voice.motion == Motion::kRises) {
            if (voice.ramp < RampFrames()) ++voice.ramp;
        } else {
            --voice.ramp;
            if (voice.ramp == 0) return i;
        }
        voice.gain += voice.gainStep;
        const float left = voice.gainGoal - voice.gain;
        if (left * voice.gainStep <= 0) {
            voice.gain = voice.gainGoal;
            voice.gainStep = 0;
        }
        frames[i] += voice.gain * ramp_[voice.ramp] * from[i];
        if (IsSteady(voice)) return i + 1;
    }
    return frames.size();
}

bool Mix::PassEnd(Voice& voice) noexcept {
    if (voice.endsPassed == voice.endsGranted) {
        // Without an answer the voice is silent. One that comes late starts the recording from its beginning.
        voice.ramp = 0;
        return false;
    }
    ++voice.endsPassed;
    voice.position = voice.ramp == 0 ? 0 : clips_[voice.clip].shape.loopStart;
    return true;
}

}  // namespace host
