#include "runtime/performance/PerformancePlayer.h"

#include <utility>

#include "runtime/Phone.h"
#include "runtime/package/Package.h"
#include "runtime/screen/Screen.h"
#include "runtime/sound/Sound.h"

namespace host {

namespace {

constexpr Microseconds kEndsAfterLastAction = 500 * kMicrosecondsPerMillisecond;
// Fingers of named controls are numbered from here, out of the way of 0..9 and of those that a window numbers.
constexpr std::int64_t kFirstNamedFinger = 1'000'000;

}  // namespace

bool PerformancePlayer::Check(const Performance& performance, const Package& package, Storage& storage,
                              const std::string& screenshotFolder, std::string& problem) {
    bool takesScreenshots = false;
    for (const Performance::Step& step : performance.Steps()) {
        takesScreenshots = takesScreenshots || std::holds_alternative<ScreenshotAction>(step.action);
        const std::string* control = Performance::ControlOf(step.action);
        if (control == nullptr || package.HasControl(*control)) continue;
        problem = performance.Name() + ':' + std::to_string(step.line) + ": no layout has a control " + *control;
        return false;
    }
    if (!takesScreenshots || storage.MakeFolder(screenshotFolder)) return true;
    problem = screenshotFolder + ": the folder for the screenshots cannot be made";
    return false;
}

PerformancePlayer::PerformancePlayer(Phone& phone, std::shared_ptr<const Performance> performance,
                                     std::string screenshotFolder, AtEnd atEnd)
    : phone_(phone),
      runtime_(phone.GetRuntime()),
      performance_(std::move(performance)),
      screenshotFolder_(std::move(screenshotFolder)),
      atEnd_(atEnd) {}

void PerformancePlayer::Start() {
    start_ = runtime_.GetLoop().Now();
    ArmNext();
}

void PerformancePlayer::ArmNext() {
    EventLoop& loop = runtime_.GetLoop();
    if (next_ == performance_->Steps().size()) {
        if (atEnd_ == AtEnd::kEndProgram) loop.StartTimer(kEndsAfterLastAction, [this] { phone_.RequestEnd(); });
        return;
    }
    const Microseconds due = start_ + performance_->Steps()[next_].time;
    loop.StartTimer(due > loop.Now() ? due - loop.Now() : 0, [this] { DoNext(); });
}

void PerformancePlayer::DoNext() {
    const Performance::Step& step = performance_->Steps()[next_++];
    std::visit([this, &step](const auto& action) { Do(action, step.line); }, step.action);
    ArmNext();
}

void PerformancePlayer::Do(const TouchAction& action, int) {
    runtime_.GetScreen().Touch(action.finger, action.phase, action.position);
}

void PerformancePlayer::Do(const PressAction& action, int line) {
    const auto point = runtime_.GetScreen().PointOn(action.control, action.fraction.x, action.fraction.y);
    if (!point) {
        Complain(line, "no " + action.control + " can be pressed now");
        return;
    }
    runtime_.GetScreen().Touch(FingerFor(action.control), TouchPhase::kDown, *point);
}

void PerformancePlayer::Do(const ReleaseAction& action, int) {
    runtime_.GetScreen().Touch(FingerFor(action.control), TouchPhase::kUp, {});
}

void PerformancePlayer::Do(const TapAction& action, int line) {
    Do(PressAction{action.control, action.fraction}, line);
    Do(ReleaseAction{action.control}, line);
}

void PerformancePlayer::Do(const KeyAction& action, int) {
    if (action.direction == KeyDirection::kPress) {
        runtime_.GetScreen().PressKey(action.key);
    } else {
        runtime_.GetScreen().ReleaseKey(action.key);
    }
}

void PerformancePlayer::Do(const BreathAction& action, int) {
    runtime_.GetSound().GetSimulatedMicrophone().SetBreath(action.level);
}

void PerformancePlayer::Do(const PeakAction& action, int) {
    runtime_.GetSound().GetSimulatedMicrophone().SetPeak(action.peak);
}

void PerformancePlayer::Do(const RingtoneAction& action, int) {
    runtime_.GetSound().SetRingtoneVolume(action.volume);
}

void PerformancePlayer::Do(const PickAction& action, int line) {
    if (!runtime_.GetScreen().PickColor(action.control, action.color)) {
        Complain(line, "no colour picker " + action.control + " is on the screen now");
    }
}

void PerformancePlayer::Do(const StateAction& action, int) {
    switch (action.change) {
        case StateChange::kBackground:
            phone_.EnterBackground();
            break;
        case StateChange::kForeground:
            phone_.EnterForeground();
            break;
        case StateChange::kScreenOff:
            phone_.TurnScreenOff();
            break;
        case StateChange::kScreenOn:
            phone_.TurnScreenOn();
            break;
    }
}

void PerformancePlayer::Do(const DeviceAction& action, int) {
    Sound& sound = runtime_.GetSound();
    const bool isLost = action.change == DeviceChange::kLost;
    if (action.device == Device::kSpeaker) {
        sound.GetOutput().SetSimulatedLoss(isLost);
    } else {
        isLost ? sound.GetSimulatedMicrophone().Lose() : sound.GetSimulatedMicrophone().Restore();
    }
}

void PerformancePlayer::Do(const ScreenshotAction& action, int line) {
    const bool isAbsolute = action.file.front() == '/';
    const std::string path = isAbsolute ? action.file : screenshotFolder_ + '/' + action.file;
    if (runtime_.GetScreen().SavePicture(path)) return;
    runtime_.GetConsole().ReportLoss(Place(line) + "cannot write the screenshot " + path);
}

void PerformancePlayer::Do(const QuitAction&, int) {
    phone_.RequestEnd();
}

void PerformancePlayer::Complain(int line, const std::string& reason) {
    runtime_.GetConsole().SayOnce(Place(line) + reason);
}

std::string PerformancePlayer::Place(int line) const {
    return performance_->Name() + ':' + std::to_string(line) + ": ";
}

std::int64_t PerformancePlayer::FingerFor(const std::string& control) {
    const auto [place, isNew] = fingers_.try_emplace(control, kFirstNamedFinger);
    if (isNew) place->second += static_cast<std::int64_t>(fingers_.size());
    return place->second;
}

}  // namespace host
