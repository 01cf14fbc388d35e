#include "runtime/sound/Mix.h"

#include <algorithm>
#include <cmath>

namespace host {

namespace {

constexpr std::size_t kCommands = 1024;
constexpr int kRampsPerSecond = 200;  // 5 ms each

// The UI thread has this long to answer that a recording is to be repeated: 93 ms at 44100 Hz.
constexpr int kLeadFrames = 4096;
constexpr int kLeadPeriods = 2;  // with a device of very long periods

constexpr double kPi = 3.14159265358979323846;

}  // namespace

Mix::Mix() : commands_(kCommands), ramp_{0, 1} {}

void Mix::Prepare(int rate, int periodFrames) {
    const int rampFrames = std::max(1, rate / kRampsPerSecond);
    ramp_.resize(static_cast<std::size_t>(rampFrames) + 1);
    for (std::size_t i = 0; i < ramp_.size(); ++i) {
        ramp_[i] = static_cast<float>((1 - std::cos(kPi * static_cast<double>(i) / rampFrames)) / 2);
    }
    leadFrames_ = static_cast<std::size_t>(std::max(kLeadFrames, kLeadPeriods * periodFrames));
}

std::uint64_t Mix::EndsDue(const MixVoice& voice) const noexcept {
    const std::size_t toEnd = voice.clip->Length() - voice.position;
    if (toEnd > leadFrames_) return voice.endsPassed;
    return voice.endsPassed + 1 + (leadFrames_ - toEnd) / voice.clip->LoopLength();
}

Mix::News Mix::Render(std::span<float> frames) noexcept {
    MixCommand command;
    while (commands_.Pop({&command, 1}) == 1) Obey(command);
    std::fill(frames.begin(), frames.end(), 0.0F);
    if (voices_ == nullptr) return News::kNone;

    News news = News::kNone;
    for (MixVoice** link = &voices_; *link != nullptr;) {
        MixVoice& voice = **link;
        RenderVoice(voice, frames);
        const bool hasFallen = voice.motion == MixVoice::Motion::kFalls && voice.ramp == 0;
        const bool hasFinished =
            voice.isFinishing && voice.position == voice.clip->Length() && voice.endsPassed == voice.endsGranted;
        if ((hasFallen && voice.afterFall == MixVoice::AfterFall::kEnds) || hasFinished) {
            *link = voice.next;
            voice.isDone.store(true, std::memory_order_release);
            news = News::kSome;
            continue;
        }
        const std::uint64_t endsDue = EndsDue(voice);
        if (endsDue > voice.endsReported.load(std::memory_order_relaxed)) {
            voice.endsReported.store(endsDue, std::memory_order_release);
            news = News::kSome;
        }
        link = &voice.next;
    }
    for (float& frame : frames) frame = std::clamp(frame, -1.0F, 1.0F);
    return news;
}

void Mix::Obey(const MixCommand& command) noexcept {
    MixVoice& voice = *command.voice;
    switch (command.kind) {
        case MixCommand::Kind::kStart:
            voice.next = voices_;
            voices_ = &voice;
            break;
        case MixCommand::Kind::kStop:
            voice.motion = MixVoice::Motion::kFalls;
            voice.afterFall = MixVoice::AfterFall::kEnds;
            break;
        case MixCommand::Kind::kPause:
            voice.motion = MixVoice::Motion::kFalls;
            voice.afterFall = MixVoice::AfterFall::kPauses;
            break;
        case MixCommand::Kind::kResume:
            voice.motion = MixVoice::Motion::kRises;
            break;
        case MixCommand::Kind::kSetGain:
            voice.gainGoal = command.value;
            voice.gainStep = (command.value - voice.gain) / static_cast<float>(RampFrames());
            break;
        case MixCommand::Kind::kGrantRepeat:
            ++voice.endsGranted;
            break;
        case MixCommand::Kind::kFinish:
            voice.isFinishing = true;
            break;
    }
    voice.commandsObeyed.fetch_add(1, std::memory_order_release);
}

bool Mix::IsSteady(const MixVoice& voice) const noexcept {
    return voice.motion == MixVoice::Motion::kRises && voice.ramp == RampFrames() && voice.gainStep == 0;
}

void Mix::RenderVoice(MixVoice& voice, std::span<float> frames) noexcept {
    const Clip& clip = *voice.clip;
    const std::size_t ready = clip.Ready();
    while (!frames.empty()) {
        if (voice.motion == MixVoice::Motion::kFalls && voice.ramp == 0) return;
        if (voice.position == clip.Length() && !PassEnd(voice)) return;
        std::size_t count = std::min(frames.size(), clip.Length() - voice.position);
        if (voice.isFinishing && voice.motion == MixVoice::Motion::kRises && voice.endsPassed == voice.endsGranted) {
            // The last repeat: the ramp to silence ends with the clip.
            const std::size_t toEnd = clip.Length() - voice.position;
            if (toEnd > RampFrames()) {
                count = std::min(count, toEnd - RampFrames());
            } else {
                voice.motion = MixVoice::Motion::kFalls;
            }
        }
        // Never in practice: the decoder is far ahead, and a UI thread that stands still stops all else too.
        count = std::min(count, ready - std::min(ready, voice.position));
        if (count == 0) return;

        if (IsSteady(voice)) {
            const float* from = clip.Frames() + voice.position;
            for (std::size_t i = 0; i < count; ++i) frames[i] += voice.gain * from[i];
        } else {
            count = RenderRamp(voice, frames.first(count));
        }
        voice.position += count;
        frames = frames.subspan(count);
    }
}

std::size_t Mix::RenderRamp(MixVoice& voice, std::span<float> frames) noexcept {
    const float* from = voice.clip->Frames() + voice.position;
    for (std::size_t i = 0; i < frames.size(); ++i) {
        if (voice.motion == MixVoice::Motion::kRises) {
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

bool Mix::PassEnd(MixVoice& voice) noexcept {
    if (voice.endsPassed == voice.endsGranted) {
        // Without an answer the voice is silent. One that comes late starts the recording from its beginning.
        voice.ramp = 0;
        return false;
    }
    ++voice.endsPassed;
    voice.position = voice.ramp == 0 ? 0 : voice.clip->LoopStart();
    return true;
}

}  // namespace host
