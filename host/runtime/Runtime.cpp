#include "runtime/Runtime.h"

#include <algorithm>
#include <utility>

#include "runtime/package/Package.h"
#include "runtime/performance/PerformancePlayer.h"
#include "runtime/screen/Screen.h"
#include "runtime/sound/Sound.h"

namespace host {

namespace {

constexpr int kLoudestRingtone = 15;

Runtime* current = nullptr;

}  // namespace

// What the keyboard does beside the screen.
class Runtime::KeyEffects final : public PhoneKeyListener {
public:
    explicit KeyEffects(Runtime& runtime) : runtime_(runtime) {}

    void OnKeyBreath(double level) override { runtime_.GetSound().GetCapture().SetKeyBreath(level); }
    void OnVolumeKey(int step) override { runtime_.SetRingtoneVolume(runtime_.GetRingtoneVolume() + step); }

private:
    Runtime& runtime_;
};

Runtime::Runtime(Backend& backend, RuntimeOptions options)
    : backend_(backend),
      options_(std::move(options)),
      loop_(backend.GetClock(), backend.GetLoopDriver()),
      trace_(loop_),
      keyEffects_(std::make_unique<KeyEffects>(*this)) {
    SetRingtoneVolume(options_.ringtoneVolume);
    current = this;
}

Runtime::~Runtime() {
    if (isOpen_) backend_.GetWindow().Close();
    if (sound_) sound_->Close();
    current = nullptr;
}

Runtime& Runtime::Current() {
    return *current;
}

bool Runtime::Open(std::string& problem) {
    const std::string texts = GetStorage().PackageRoot() + "strings/" + options_.language + ".xml";
    if (options_.languageChoice == LanguageChoice::kAskedFor && !GetStorage().Stat(texts)) {
        problem = "--language: there are no texts in \"" + options_.language + "\" (" + texts + ")";
        return false;
    }
    package_ = std::make_unique<Package>();
    if (!package_->Load(GetStorage(), GetPainter(), options_.language, options_.screen, console_, problem))
        return false;
    if (!CheckPerformance(problem)) return false;
    if (options_.tracePath && !trace_.Open(*options_.tracePath, options_.hasTraceTimers ? Trace::Timers::kIncluded
                                                                                        : Trace::Timers::kOmitted)) {
        problem = *options_.tracePath + ": the trace cannot be written there";
        return false;
    }

    Window& window = backend_.GetWindow();
    if (!window.Open("Brevant", options_.screen, *this)) {
        problem = "no window can be opened on this display";
        return false;
    }
    isOpen_ = true;
    screen_ = std::make_unique<Screen>(loop_, backend_.GetClock(), GetPainter(), window, trace_, *package_,
                                       *keyEffects_, options_.screen);
    const SoundServices services{loop_,  GetStorage(), backend_.GetSpeaker(), backend_.GetMicrophone(),
                                 trace_, console_};
    const SoundOptions soundOptions{
        options_.recordPath, options_.breathPath,
        options_.isMicrophoneSimulated ? MicrophoneSource::kSimulated : MicrophoneSource::kDevice};
    sound_ = std::make_unique<Sound>(services, soundOptions);
    if (!sound_->Prepare(problem)) return false;
    sound_->Open();
    return true;
}

bool Runtime::CheckPerformance(std::string& problem) const {
    if (!options_.performance) return true;
    for (const Performance::Step& step : options_.performance->Steps()) {
        const std::string* control = Performance::ControlOf(step.action);
        if (control == nullptr || package_->HasControl(*control)) continue;
        problem =
            options_.performance->Name() + ':' + std::to_string(step.line) + ": no layout has a control " + *control;
        return false;
    }
    return true;
}

void Runtime::Run(ApplicationListener& application) {
    application_ = &application;
    SetForeground(true);
    if (options_.performance) {
        const auto atEnd =
            options_.endsAfterPerformance ? PerformancePlayer::AtEnd::kEndProgram : PerformancePlayer::AtEnd::kGoOn;
        performancePlayer_ =
            std::make_unique<PerformancePlayer>(*this, options_.performance, options_.screenshotFolder, atEnd);
        performancePlayer_->Start();
    }
    backend_.GetLoopDriver().Run(*this);
}

void Runtime::RequestEnd() {
    isEndRequested_ = true;
    backend_.GetLoopDriver().Wake();
}

void Runtime::SetRingtoneVolume(int volume) {
    ringtoneVolume_ = std::clamp(volume, 0, kLoudestRingtone);
}

void Runtime::SetForeground(bool isForeground) {
    if (isForeground_ == isForeground || application_ == nullptr) return;
    isForeground_ = isForeground;
    trace_.Add("app", isForeground ? "foreground" : "background");
    isForeground ? application_->OnForeground() : application_->OnBackground();
}

void Runtime::SetScreenOn(bool isScreenOn) {
    if (isScreenOn_ == isScreenOn || application_ == nullptr) return;
    isScreenOn_ = isScreenOn;
    trace_.Add("app", isScreenOn ? "screen-on" : "screen-off");
    isScreenOn ? application_->OnScreenOn() : application_->OnScreenOff();
}

Microseconds Runtime::RunStep(Microseconds now) {
    loop_.RunDue(now, isEndRequested_);
    if (isEndRequested_) {
        if (!hasEnded_) End();
        trace_.Flush();
        return kNever;
    }
    const Microseconds nextFrame = screen_->ComposeIfDue(now);
    trace_.Flush();
    return std::min(nextFrame, loop_.NextDue());
}

void Runtime::End() {
    trace_.Add("app", "terminating");
    // Silence first: what the application takes its time for afterwards is not heard.
    sound_->Close();
    performancePlayer_.reset();
    application_->OnEnd();
    application_ = nullptr;
    loop_.Clear();
    trace_.Add("app", "ended");
    trace_.Add("end")
        .Number("frames", static_cast<std::int64_t>(screen_->FramesComposed()))
        .Number("blocks", static_cast<std::int64_t>(sound_->GetCapture().BlocksDelivered()))
        .Number("underruns", static_cast<std::int64_t>(sound_->Underruns()));
    hasEnded_ = true;
}

void Runtime::BeforeInput() {
    loop_.SetNow(backend_.GetClock().Now());
    loop_.RunPosted();
}

void Runtime::OnTouch(const TouchInput& touch) {
    BeforeInput();
    screen_->OnTouch(touch);
}

void Runtime::OnKey(const KeyInput& key) {
    BeforeInput();
    screen_->OnKey(key);
}

void Runtime::OnInputLost() {
    BeforeInput();
    screen_->OnInputLost();
}

void Runtime::OnResized() {
    screen_->OnResized();
}

void Runtime::OnExposed() {
    screen_->OnExposed();
}

void Runtime::OnVisibilityChanged(bool isVisible) {
    BeforeInput();
    screen_->OnVisibilityChanged(isVisible);
    SetForeground(isVisible);
}

void Runtime::OnCloseRequested() {
    RequestEnd();
}

}  // namespace host
