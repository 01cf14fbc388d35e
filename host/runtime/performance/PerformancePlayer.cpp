#include "runtime/performance/PerformancePlayer.h"

#include <optional>
#include <utility>

#include "png/PngWriter.h"
#include "runtime/Phone.h"
#include "runtime/package/Package.h"
#include "runtime/screen/Screen.h"
#include "runtime/screen/controls/ColorPickerNode.h"
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
    const bool hasPlace = action.phase != TouchPhase::kUp;
    runtime_.GetScreen().Touch({FingerSource::kPerformance, action.finger}, action.phase,
                               hasPlace ? std::optional(action.position) : std::nullopt);
}

void PerformancePlayer::Do(const PressAction& action, int line) {
    const Node* control = runtime_.GetScreen().FindOnTop(action.control);
    if (control == nullptr) {
        Complain(line, "no " + action.control + " can be pressed now");
        return;
    }
    runtime_.GetScreen().Touch(FingerFor(action.control), TouchPhase::kDown, control->ScreenPointAt(action.fraction));
}

void PerformancePlayer::Do(const ReleaseAction& action, int) {
    runtime_.GetScreen().Touch(FingerFor(action.control), TouchPhase::kUp, std::nullopt);
}

void PerformancePlayer::Do(const TapAction& action, int line) {
    Do(PressAction{action.control, action.fraction}, line);
    Do(ReleaseAction{action.control}, line);
}

void PerformancePlayer::Do(const KeyAction& action, int) {
    Screen& screen = runtime_.GetScreen();
    const bool isPress = action.direction == KeyDirection::kPress;
    const auto* const phoneKey = std::get_if<PhoneKey>(&action.key);
    const auto* const code = std::get_if<std::string>(&action.key);
    if (phoneKey != nullptr && isPress) screen.PressPhoneKey(*phoneKey);
    if (phoneKey != nullptr && !isPress) screen.LiftPhoneKey(*phoneKey);
    if (code != nullptr && isPress) screen.PressKey(*code, ShiftKey::kReleased);
    if (code != nullptr && !isPress) screen.LiftKey(*code);
}

void PerformancePlayer::Do(const BreathAction& action, int) {
    runtime_.GetSound().GetSimulatedMicrophone().SetBreath(action.level);
}

void PerformancePlayer::Do(const PeakAction& action, int) {
    runtime_.GetSound().GetSimulatedMicrophone().SetPeak(action.peak);
}

void PerformancePlayer::Do(const RingtoneAction& action, int) {
    phone_.OnPerformed(action);
    runtime_.GetSound().SetRingtoneVolume(action.volume);
}

void PerformancePlayer::Do(const PickAction& action, int line) {
    Screen& screen = runtime_.GetScreen();
    screen.FlushReports();
    if (auto* picker = dynamic_cast<ColorPickerNode*>(screen.FindOnTop(action.control))) {
        phone_.OnPerformed(action);
        picker->Pick(action.color);
    } else {
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
    phone_.OnPerformed(action);
    Sound& sound = runtime_.GetSound();
    const bool isLost = action.change == DeviceChange::kLost;
    if (action.device == Device::kSpeaker) {
        sound.GetOutput().SetSimulatedLoss(isLost);
    } else if (isLost) {
        sound.GetSimulatedMicrophone().Lose();
    } else {
        sound.GetSimulatedMicrophone().Restore();
    }
}

void PerformancePlayer::Do(const ScreenshotAction& action, int line) {
    const bool isAbsolute = action.file.front() == '/';
    const std::string path = isAbsolute ? action.file : screenshotFolder_ + '/' + action.file;
    std::string problem;
    const std::unique_ptr<OutputFile> file = runtime_.GetStorage().OpenOutput(path, problem);
    if (file != nullptr) {
        const bool isWritten = file->Append(EncodePng(runtime_.GetScreen().ReadNow()));
        if (file->Close() && isWritten) return;
        problem = file->Problem();
    }
    runtime_.GetConsole().ReportLoss(Place(line) + "cannot write the screenshot " + path + ": " + problem);
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

FingerId PerformancePlayer::FingerFor(const std::string& control) {
    const auto [place, isNew] = fingers_.try_emplace(control, kFirstNamedFinger);
    if (isNew) place->second += static_cast<std::int64_t>(fingers_.size());
    return {FingerSource::kPerformance, place->second};
}

}  // namespace host
