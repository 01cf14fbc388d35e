#include "backend/mix/Mix.h"

#include <algorithm>
#include <cmath>
#include <complex>

namespace host {

namespace {

constexpr int kRampsPerSecond = 200;  // 5 ms each

// A change of note takes a player's finger some 10 to 20 ms (M. Castellengo, "Acoustical analysis of initial transients
// in flute like instruments", Acta Acustica 85, 1999): 10 to 90 % of this are 10.6 ms.
constexpr int kGlidesPerSecond = 55;

// A release is exp(-x) (1 + x + x^2/2 + x^3/6), x in time constants, what four equal low-passes in a row make of an
// end: it starts without a corner, comes from 90 to 10 % of the level in 4.936 of them and is at -72 dB after three
// times that. Falling slowly at first it has lost some 8 dB when a breath comes back that one block of the microphone
// missed.
constexpr float kReleaseTimeConstants = 4.936F;
constexpr float kInaudible = 1e-5F;  // -100 dB

// A tone that has fallen less than this, -12 dB, still sounds: the next one takes its place. Of a single block that the
// microphone missed, nothing is heard but a dip. A tongue's stroke takes longer, and gives a new attack.
constexpr double kStillSounds = 0.25;

constexpr double kPi = 3.14159265358979323846;

// Half a period of a raised cosine from 0 to 1.
std::vector<float> Rise(int frames) {
    std::vector<float> rise(static_cast<std::size_t>(frames) + 1);
    for (std::size_t i = 0; i < rise.size(); ++i) {
        rise[i] = static_cast<float>((1 - std::cos(kPi * static_cast<double>(i) / frames)) / 2);
    }
    return rise;
}

}  // namespace

Mix::Mix() : ramp_{0, 1}, course_{0, 1} {}

void Mix::Prepare(int rate, int periodFrames) {
    ramp_ = Rise(std::max(1, rate / kRampsPerSecond));
    course_ = Rise(std::max(1, rate / kGlidesPerSecond));
    voiceCount_ = 0;
    glide_ = {0, 0, GlideFrames()};
    isMuted_ = false;
    SetPeriod(periodFrames);
}

void Mix::SetClip(ClipNumber number, const ClipShape& shape, const float* frames) noexcept {
    Clip clip;
    clip.shape = shape;
    clip.frames = frames;
    if (shape.releaseFrames > 0) {
        clip.fallStep = kReleaseTimeConstants / shape.releaseFrames;
        clip.fallDecay = std::exp(-clip.fallStep);
    }
    clips_[number] = clip;
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
            if (voice->motion == Motion::kRises) voice->motion = Motion::kFalls;
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
    const Voice* const before = FindPredecessor();
    Voice& voice = voices_[voiceCount_++];
    voice = {};
    voice.number = command.voice;
    voice.clip = command.clip;
    voice.gain = command.gain;
    voice.gainGoal = command.gain;
    voice.endsReported = command.number;
    if (before != nullptr && clips_[voice.clip].shape.periodFrames > 0) TakePlace(voice, *before);
    if (voice.isGliding) return;
    Clip& clip = clips_[voice.clip];
    const std::uint32_t take = clip.nextTake;
    clip.nextTake = (take + 1) % clip.shape.takes;
    if (clip.ready >= clip.shape.length + take * clip.shape.loopStart) voice.take = take;
}

// The loudest of the voices that have only just begun to fall.
const Mix::Voice* Mix::FindPredecessor() const noexcept {
    const Voice* loudest = nullptr;
    for (std::size_t i = 0; i < voiceCount_; ++i) {
        const Voice& voice = voices_[i];
        const Clip& clip = clips_[voice.clip];
        if (voice.motion != Motion::kFalls || !clip.HasRelease() || clip.shape.periodFrames <= 0) continue;
        if (static_cast<double>(voice.Fall()) < kStillSounds) continue;
        if (loudest == nullptr || Level(voice) > Level(*loudest)) loudest = &voice;
    }
    return loudest;
}

// Lets `next` enter where `before` has come to, if that much of its clip is there. Without that it starts like any
// other.
void Mix::TakePlace(Voice& next, const Voice& before) noexcept {
    const bool isGlideOn = glide_.frame < GlideFrames();
    if (isGlideOn && !before.isGliding) return;
    const ClipShape& shape = clips_[next.clip].shape;
    const ClipShape& shapeBefore = clips_[before.clip].shape;
    const auto period = static_cast<double>(shape.periodFrames);
    const Glide glide{isGlideOn ? GlidePitch(glide_.frame) : 1 / static_cast<double>(shapeBefore.periodFrames),
                      1 / period, 0};
    double way = 0;
    for (std::uint32_t frame = 0; frame < GlideFrames(); ++frame) {
        way += period * (glide.from + (glide.to - glide.from) * static_cast<double>(course_[frame]));
    }

    // A tone whose attack is not over hands the rest of it on.
    const bool isInAttack = before.position < std::min(shapeBefore.loopStart, shape.loopStart);
    const std::uint32_t take = isInAttack ? std::min(before.take, shape.takes - 1) : 0;
    const double entry = isInAttack ? before.position : shape.loopStart;
    constexpr double kPeriodsToPhase = 3;  // the way to the right phase, and what is looked at beyond
    const double reach = entry + way + kPeriodsToPhase * period;
    const double readyWanted = take == 0 ? reach : shape.length + take * shape.loopStart;
    if (clips_[next.clip].ready < readyWanted || reach > shape.length) return;

    next.take = take;
    const double turns = (PhaseAt(before, before.position + before.fraction) - PhaseAt(next, entry)) / (2 * kPi);
    const double inPhase = entry + period * (turns - std::floor(turns));
    // The glide ends on a whole frame: from there on the clip is only copied.
    const double start = std::round(inPhase + way) - way;
    next.position = static_cast<std::uint32_t>(start);
    next.fraction = start - next.position;
    next.ramp = RampFrames();

    for (std::size_t i = 0; i < voiceCount_; ++i) {
        Voice& voice = voices_[i];
        if (&voice == &next || (&voice != &before && !voice.isGliding)) continue;
        voice.shareFrom = voice.isGliding ? static_cast<float>(Share(voice, glide_.frame)) : 1;
        voice.shareTo = 0;
        voice.isGliding = true;
        voice.motion = Motion::kGivesWay;
    }
    next.isGliding = true;
    next.shareFrom = 0;
    next.shareTo = 1;
    glide_ = glide;
}

// Ends the voice that has fallen furthest. False when all of them are wanted.
bool Mix::MakeRoom(MixReporter& reporter) noexcept {
    std::size_t quietest = kMostVoices;
    for (std::size_t i = 0; i < voiceCount_; ++i) {
        if (voices_[i].motion != Motion::kFalls) continue;
        if (quietest == kMostVoices || Level(voices_[i]) < Level(voices_[quietest])) quietest = i;
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
    glide_.frame += static_cast<std::uint32_t>(std::min<std::size_t>(frames.size(), GlideFrames() - glide_.frame));
    if (isMuted_) std::fill(frames.begin(), frames.end(), 0.0F);
    for (float& frame : frames) frame = std::clamp(frame, -1.0F, 1.0F);
}

bool Mix::IsOver(const Voice& voice) const noexcept {
    const Clip& clip = clips_[voice.clip];
    const bool hasEnded = IsLastPass(voice) && !clip.HasRelease() && voice.position == clip.shape.length;
    const bool hasGivenWay = voice.motion == Motion::kGivesWay && !voice.isGliding;
    return HasFallen(voice) || hasGivenWay || hasEnded;
}

bool Mix::HasFallen(const Voice& voice) const noexcept {
    return voice.motion == Motion::kFalls && (voice.ramp == 0 || voice.Fall() < kInaudible);
}

bool Mix::IsSteady(const Voice& voice) const noexcept {
    return voice.motion == Motion::kRises && voice.ramp == RampFrames() && voice.gainStep == 0;
}

bool Mix::IsLastPass(const Voice& voice) const noexcept {
    return voice.isFinishing && voice.endsPassed == voice.endsGranted;
}

double Mix::Level(const Voice& voice) const noexcept {
    const double share = voice.isGliding ? Share(voice, glide_.frame) : 1;
    return static_cast<double>(voice.gain * ramp_[voice.ramp] * voice.Fall()) * share;
}

void Mix::RenderVoice(Voice& voice, std::span<float> frames) noexcept {
    const Clip& clip = clips_[voice.clip];
    const std::size_t wanted = frames.size();
    while (!frames.empty()) {
        if (IsOver(voice)) return;
        if (voice.position >= clip.shape.length && !PassEnd(voice)) return;
        if (voice.isGliding) {
            frames = frames.subspan(RenderGlide(voice, glide_.frame + (wanted - frames.size()), frames));
            continue;
        }
        const std::uint32_t toEnd = clip.shape.length - voice.position;
        // The last pass: the ramp to silence ends with the clip, also where the tone has not risen to its full level.
        const bool endsWithClip = IsLastPass(voice) && !clip.HasRelease();
        if (endsWithClip && toEnd <= voice.ramp) voice.motion = Motion::kFalls;
        // What is not decoded yet is silent. In practice the decoder is far ahead: a UI thread that stands still stops
        // all else too.
        const std::uint32_t place = PlaceOf(voice, voice.position);
        const std::uint32_t ready = clip.ready - std::min(clip.ready, place);
        const std::uint32_t inOrder = place == voice.position ? toEnd : clip.shape.loopStart - voice.position;
        std::size_t count = std::min<std::size_t>(frames.size(), std::min(inOrder, ready));
        if (count == 0) return;

        const float* from = clip.frames + place;
        if (IsSteady(voice)) {
            if (endsWithClip) count = std::min<std::size_t>(count, toEnd - voice.ramp);
            for (std::size_t i = 0; i < count; ++i) frames[i] += voice.gain * from[i];
        } else {
            if (endsWithClip && voice.motion == Motion::kRises) {
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
        const float level = NextLevel(voice);
        if (HasFallen(voice)) return i;
        frames[i] += level * from[i];
        if (IsSteady(voice)) return i + 1;
    }
    return frames.size();
}

// Its level at its next frame.
float Mix::NextLevel(Voice& voice) noexcept {
    const Clip& clip = clips_[voice.clip];
    if (voice.motion == Motion::kRises) {
        if (voice.ramp < RampFrames()) ++voice.ramp;
    } else if (voice.motion == Motion::kFalls && clip.HasRelease()) {
        voice.fallen += clip.fallStep;
        voice.decay *= clip.fallDecay;
    } else if (voice.motion == Motion::kFalls) {
        --voice.ramp;
    }
    voice.gain += voice.gainStep;
    const float left = voice.gainGoal - voice.gain;
    if (left * voice.gainStep <= 0) {
        voice.gain = voice.gainGoal;
        voice.gainStep = 0;
    }
    return voice.gain * ramp_[voice.ramp] * voice.Fall();
}

// Reads the clip at the glide's pitch, from that frame of the glide on. Stops at the glide's end. Returns how many
// frames it rendered.
std::size_t Mix::RenderGlide(Voice& voice, std::size_t frame, std::span<float> frames) noexcept {
    const ClipShape& shape = clips_[voice.clip].shape;
    const auto period = static_cast<double>(shape.periodFrames);
    for (std::size_t i = 0; i < frames.size(); ++i) {
        if (frame + i >= GlideFrames()) {
            // It was meant to end on a whole frame; what is left is rounding.
            voice.position += static_cast<std::uint32_t>(std::lround(voice.fraction));
            voice.fraction = 0;
            voice.isGliding = false;
            return i;
        }
        if (voice.position >= shape.length && !PassEnd(voice)) return frames.size();
        // Cubic between the two frames in the middle of four (E. Catmull, R. Rom, 1974).
        const std::int64_t at = voice.position;
        const double a = FrameAt(voice, at - 1);
        const double b = FrameAt(voice, at);
        const double c = FrameAt(voice, at + 1);
        const double d = FrameAt(voice, at + 2);
        const double t = voice.fraction;
        const double between = b + t / 2 * (c - a + t * (2 * a - 5 * b + 4 * c - d + t * (3 * (b - c) + d - a)));
        const double level = static_cast<double>(NextLevel(voice)) * Share(voice, frame + i);
        frames[i] += static_cast<float>(level * between);

        voice.fraction += period * GlidePitch(frame + i);
        const double whole = std::floor(voice.fraction);
        voice.position += static_cast<std::uint32_t>(whole);
        voice.fraction -= whole;
    }
    return frames.size();
}

double Mix::GlidePitch(std::size_t frame) const noexcept {
    const std::size_t at = std::min<std::size_t>(frame, GlideFrames());
    return glide_.from + (glide_.to - glide_.from) * static_cast<double>(course_[at]);
}

double Mix::Share(const Voice& voice, std::size_t frame) const noexcept {
    const std::size_t at = std::min<std::size_t>(frame, GlideFrames());
    return static_cast<double>(voice.shareFrom + (voice.shareTo - voice.shareFrom) * course_[at]);
}

// The phase of the voice's tone at a place in its clip, in radians: that of its first partial in a window of four
// periods around there.
double Mix::PhaseAt(const Voice& voice, double position) const noexcept {
    constexpr double kPeriodsToASide = 2;
    const auto period = static_cast<double>(clips_[voice.clip].shape.periodFrames);
    const double half = kPeriodsToASide * period;
    const auto first = static_cast<std::int64_t>(std::ceil(position - half));
    const auto count = static_cast<std::int64_t>(2 * half);
    const double away = static_cast<double>(first) - position;
    // Both turn by the same angle at each frame.
    std::complex<double> partial = std::polar(1.0, -2 * kPi * away / period);
    std::complex<double> window = std::polar(1.0, kPi * away / half);
    const std::complex<double> partialTurn = std::polar(1.0, -2 * kPi / period);
    const std::complex<double> windowTurn = std::polar(1.0, kPi / half);
    std::complex<double> sum;
    for (std::int64_t i = 0; i < count; ++i) {
        sum += (1 + window.real()) * FrameAt(voice, first + i) * partial;
        partial *= partialTurn;
        window *= windowTurn;
    }
    return std::arg(sum);
}

// 0 where there is nothing, or nothing yet.
double Mix::FrameAt(const Voice& voice, std::int64_t position) const noexcept {
    const Clip& clip = clips_[voice.clip];
    if (position < 0) return 0;
    auto at = static_cast<std::uint32_t>(position);
    if (at >= clip.shape.length)
        at = clip.shape.loopStart + (at - clip.shape.length) % (clip.shape.length - clip.shape.loopStart);
    at = PlaceOf(voice, at);
    return at < clip.ready ? static_cast<double>(clip.frames[at]) : 0;
}

// Where the clip keeps that frame of the voice's take.
std::uint32_t Mix::PlaceOf(const Voice& voice, std::uint32_t position) const noexcept {
    const ClipShape& shape = clips_[voice.clip].shape;
    if (voice.take == 0 || position >= shape.loopStart) return position;
    return shape.length + (voice.take - 1) * shape.loopStart + position;
}

bool Mix::PassEnd(Voice& voice) noexcept {
    const Clip& clip = clips_[voice.clip];
    const std::uint32_t beyond = voice.position - clip.shape.length;
    if (clip.HasRelease() && IsLastPass(voice) && voice.motion == Motion::kRises) voice.motion = Motion::kFalls;
    if (clip.HasRelease() && voice.motion != Motion::kRises) {
        // What falls silent goes on meanwhile.
        voice.position = clip.shape.loopStart + beyond;
        return true;
    }
    if (voice.endsPassed == voice.endsGranted) {
        // Without an answer the voice is silent. One that comes late starts the recording from its beginning.
        voice.ramp = 0;
        return false;
    }
    ++voice.endsPassed;
    voice.position = voice.ramp == 0 ? 0 : clip.shape.loopStart + beyond;
    return true;
}

}  // namespace host
