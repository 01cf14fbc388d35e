#include "runtime/performance/PerformanceKeeper.h"

#include <algorithm>
#include <span>
#include <utility>

#include "runtime/performance/PerformanceWriter.h"

namespace host {

namespace {

constexpr int kFingers = 10;
// A peak's line belongs into the middle of the block that has it, whatever the phase of the player's blocks.
constexpr Microseconds kBeforeBlockEnd = kBlockTime / 2;
// Lines are held back so long, since a block's comes when the block has ended.
constexpr Microseconds kHeldBack = 2 * kBlockTime;
constexpr Microseconds kWriteInterval = 500 * kMicrosecondsPerMillisecond;
// Beside every control: a button that is let go there does not act.
constexpr PointF kNowhere{-1, -1};

}  // namespace

PerformanceKeeper::PerformanceKeeper(EventLoop& loop, Console& console, std::unique_ptr<OutputFile> file,
                                     std::string path)
    : loop_(loop), console_(console), file_(std::move(file)), path_(std::move(path)), peak_(kPhoneSilence) {}

PerformanceKeeper::~PerformanceKeeper() {
    loop_.CancelTimer(timer_);
}

void PerformanceKeeper::Start(const Options& options) {
    start_ = loop_.Now();
    hasStarted_ = true;
    const std::string screen = std::to_string(options.screen.width) + 'x' + std::to_string(options.screen.height);
    Append("# Kept by brevant. It plays on a screen of the same size (--screen " + screen +
           ") and with the same settings (--data).\n");
    Add(0, RingtoneAction{options.ringtoneVolume});
    Add(0, PeakAction{peak_});
    WriteOnTimer();
}

void PerformanceKeeper::Keep(const PerformanceAction& action) {
    Add(Now(), action);
}

void PerformanceKeeper::Finish() {
    if (file_ == nullptr) return;
    loop_.CancelTimer(std::exchange(timer_, TimerQueue::kNone));
    Add(Now(), QuitAction{});
    WriteUntil(Now());
    const std::unique_ptr<OutputFile> file = std::move(file_);
    if (file != nullptr && !file->Close()) console_.ReportLoss(path_ + ": the performance is cut: " + file->Problem());
}

void PerformanceKeeper::OnFingerUsed(const FingerId& finger, TouchPhase phase, std::optional<PointF> place) {
    const auto known = fingers_.find(finger);
    if (known == fingers_.end()) {
        if (phase != TouchPhase::kDown || fingers_.size() == kFingers) return;
        const int number = NumberFor(finger);
        fingers_.emplace(finger, number);
        Add(Now(), TouchAction{number, TouchPhase::kDown, place.value_or(kNowhere)});
        return;
    }
    const int number = known->second;
    switch (phase) {
        case TouchPhase::kDown:
        case TouchPhase::kMove:
            Add(Now(), TouchAction{number, TouchPhase::kMove, place.value_or(kNowhere)});
            return;
        case TouchPhase::kUp:
            if (place) Add(Now(), TouchAction{number, TouchPhase::kMove, *place});
            Add(Now(), TouchAction{number, TouchPhase::kUp, {}});
            break;
        case TouchPhase::kCancel:
            LiftFinger(number);
            break;
    }
    fingers_.erase(known);
}

int PerformanceKeeper::NumberFor(const FingerId& finger) const {
    const auto isFree = [this](int number) {
        return std::none_of(fingers_.begin(), fingers_.end(),
                            [number](const auto& each) { return each.second == number; });
    };
    // Its own where it can be: fingers that are lifted together are lifted in the order of their numbers.
    if (finger.number >= 0 && finger.number < kFingers && isFree(static_cast<int>(finger.number))) {
        return static_cast<int>(finger.number);
    }
    int number = 0;
    while (!isFree(number)) ++number;
    return number;
}

void PerformanceKeeper::LiftFinger(int number) {
    Add(Now(), TouchAction{number, TouchPhase::kMove, kNowhere});
    Add(Now(), TouchAction{number, TouchPhase::kUp, {}});
}

void PerformanceKeeper::OnKeyUsed(std::string_view code, KeyPhase phase) {
    KeepKey(std::string(code), phase);
}

void PerformanceKeeper::OnPhoneKeyUsed(PhoneKey key, KeyPhase phase) {
    KeepKey(key, phase);
}

void PerformanceKeeper::KeepKey(Key key, KeyPhase phase) {
    if (phase == KeyPhase::kRepeat) return;
    const auto known = std::find(keys_.begin(), keys_.end(), key);
    if (phase == KeyPhase::kUp && known != keys_.end()) keys_.erase(known);
    if (phase == KeyPhase::kDown && known == keys_.end()) keys_.push_back(key);
    Add(Now(), KeyAction{std::move(key), phase == KeyPhase::kDown ? KeyDirection::kPress : KeyDirection::kRelease});
}

void PerformanceKeeper::OnAllLifted() {
    for (const auto& [finger, number] : std::exchange(fingers_, {})) LiftFinger(number);
    for (Key& key : std::exchange(keys_, {})) Add(Now(), KeyAction{std::move(key), KeyDirection::kRelease});
}

void PerformanceKeeper::OnBlockHeard(const Block& block) {
    const std::uint8_t peak = PeakOf(block);
    if (std::exchange(peak_, peak) != peak) Add(std::max<Microseconds>(Now() - kBeforeBlockEnd, 0), PeakAction{peak});
}

void PerformanceKeeper::Add(Microseconds time, PerformanceAction action) {
    if (file_ == nullptr || !hasStarted_) return;
    // What is written cannot be gone before any more: after a long step a block may come late.
    time = std::max(time, written_);
    const auto place = std::upper_bound(lines_.begin(), lines_.end(), time,
                                        [](Microseconds wanted, const Line& line) { return wanted < line.time; });
    lines_.insert(place, {time, std::move(action)});
}

void PerformanceKeeper::WriteUntil(Microseconds time) {
    std::string text;
    auto line = lines_.begin();
    for (; line != lines_.end() && line->time <= time; ++line) {
        text += PerformanceLine(line->time, line->action);
        written_ = line->time;
    }
    lines_.erase(lines_.begin(), line);
    Append(text);
}

void PerformanceKeeper::WriteOnTimer() {
    timer_ = loop_.StartTimer(kWriteInterval, [this] {
        WriteUntil(Now() - kHeldBack);
        WriteOnTimer();
    });
}

void PerformanceKeeper::Append(const std::string& text) {
    if (file_ == nullptr || text.empty() || file_->Append(std::as_bytes(std::span(text)))) return;
    console_.ReportLoss(path_ + ": the performance is cut: " + file_->Problem());
    file_.reset();
}

}  // namespace host
