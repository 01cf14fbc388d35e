#include "runtime/Phone.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "runtime/midi/MidiFile.h"
#include "runtime/midi/MidiPortSink.h"
#include "runtime/midi/MidiVoice.h"
#include "runtime/notices/Notices.h"
#include "runtime/package/Package.h"
#include "runtime/performance/Performance.h"
#include "runtime/performance/PerformanceKeeper.h"
#include "runtime/performance/PerformancePlayer.h"
#include "runtime/performance/PerformanceReader.h"
#include "runtime/screen/Screen.h"
#include "runtime/screen/composing/Compositor.h"
#include "runtime/sound/Sound.h"

namespace host {

namespace {

constexpr int kLostSomething = 1;
// Asking for a sound device takes longer than a frame. The first screen is shown before that: the devices are opened so
// long after the start, when nothing waits to be shown, or as soon as a sound is wanted. The window's icon comes then,
// too.
constexpr Microseconds kFirstScreenTime = 100 * kMicrosecondsPerMillisecond;

Phone* current = nullptr;

// What breathes into a phone is the performance's or a file's, where there is one.
MicrophoneSupport MicrophoneOf(const BackendEntry& entry, const Options& options) {
    const bool isSimulated = options.breath || options.performance || !options.usesMicrophone;
    return isSimulated ? MicrophoneSupport::kNone : entry.microphone;
}

}  // namespace

Phone::Phone(const BackendEntry& entry, const BackendOptions& backendOptions, Options options)
    : entry_(entry),
      options_(std::move(options)),
      backend_(entry.create(backendOptions)),
      parts_(backend_->Parts()),
      runtime_(parts_, options_, MicrophoneOf(entry, options_)),
      placeKeeper_(parts_.storage, parts_.window, options_.screen) {
    current = this;
}

Phone::~Phone() {
    runtime_.CloseSound();
    application_.reset();
    current = nullptr;
}

Phone& Phone::Current() {
    return *current;
}

bool Phone::Open(std::string& problem) {
    placeKeeper_.Restore();
    if (!runtime_.Prepare(problem) || !PreparePerformance(problem) || !PrepareKeeper(problem) ||
        !PrepareMidi(problem) || !runtime_.Open(*this, problem)) {
        return false;
    }
    if (entry_.attendance == Attendance::kAttended) {
        notices_ = std::make_unique<Notices>(runtime_.GetScreen(), runtime_.GetSound(), runtime_.GetLoop(),
                                             runtime_.GetPackage(), runtime_.GetStorage());
    } else {
        // Where nobody looks, no device keeps anybody waiting.
        runtime_.GetSound().Open();
    }
    return true;
}

bool Phone::PreparePerformance(std::string& problem) {
    if (!options_.performance) {
        if (entry_.attendance == Attendance::kUnattended) performance_ = std::make_shared<const Performance>();
        return true;
    }
    performance_ = LoadPerformance(parts_.storage, *options_.performance, problem);
    return performance_ != nullptr && PerformancePlayer::Check(*performance_, runtime_.GetPackage(), parts_.storage,
                                                               options_.screenshots, problem);
}

bool Phone::PrepareKeeper(std::string& problem) {
    if (!options_.keepPerformance) return true;
    std::string reason;
    auto file = parts_.storage.OpenOutput(*options_.keepPerformance, reason);
    if (file == nullptr) {
        problem = *options_.keepPerformance + ": the performance cannot be kept there: " + reason;
        return false;
    }
    performanceKeeper_ = std::make_unique<PerformanceKeeper>(runtime_.GetLoop(), runtime_.GetConsole(), std::move(file),
                                                             *options_.keepPerformance);
    return true;
}

bool Phone::PrepareMidi(std::string& problem) {
    std::string reason;
    if (options_.midiFile) {
        midiFile_ = parts_.storage.OpenOutput(*options_.midiFile, reason);
        if (midiFile_ == nullptr) {
            problem = *options_.midiFile + ": the MIDI file cannot be written there: " + reason;
            return false;
        }
    }
    if (!options_.hasMidi) return true;
    if (parts_.midiPort == nullptr) {
        problem = "--midi: there is no MIDI sequencer here; --midi-file FILE needs none";
        return false;
    }
    if (parts_.midiPort->Open("Brevant", reason)) return true;
    problem = "--midi: no MIDI sequencer can be reached (" + reason + "); --midi-file FILE needs none";
    return false;
}

void Phone::StartMidi() {
    std::vector<std::unique_ptr<MidiSink>> sinks;
    if (midiFile_ != nullptr) {
        sinks.push_back(std::make_unique<MidiFile>(runtime_.GetLoop(), runtime_.GetConsole(), std::move(midiFile_),
                                                   *options_.midiFile));
    }
    if (options_.hasMidi) sinks.push_back(std::make_unique<MidiPortSink>(*parts_.midiPort));
    if (sinks.empty()) return;
    ToneTable tones;
    std::vector<std::string> faults;
    tones.Load(parts_.storage, faults);
    for (const std::string& fault : faults) runtime_.GetConsole().SayOnce(fault);
    midiVoice_ = std::make_unique<MidiVoice>(std::move(tones), std::move(sinks));
    runtime_.GetSound().SetToneWatcher(midiVoice_.get());
}

void Phone::Run(EntryPoint entryPoint, EndHandler onEnd) {
    onEnd_ = std::move(onEnd);
    std::vector<std::string> texts = options_.rest;
    std::vector<char*> arguments;
    arguments.reserve(texts.size() + 1);
    for (std::string& text : texts) arguments.push_back(text.data());
    const int count = static_cast<int>(arguments.size());
    arguments.push_back(nullptr);
    isInRun_ = true;
    const int result = entryPoint(count, arguments.data());
    isInRun_ = false;
    // Without a Start the application has not come up, and nothing else will end it.
    if (hasEnded_ || application_ == nullptr) TellEnd(result);
}

void Phone::Start(std::unique_ptr<Application> application) {
    application_ = std::move(application);
    runtime_.GetLoop().StartTimer(kFirstScreenTime, [this] { isTimeForTheRest_ = true; });
    runtime_.GetScreen().SetHostKeyHandler(
        [this](std::string_view code, KeyPhase phase) { return OnHostKey(code, phase); });
    StartMidi();
    if (visibility_ == Visibility::kVisible) EnterForeground();
    if (performanceKeeper_) {
        performanceKeeper_->Start(options_);
        runtime_.GetScreen().SetInputWatcher(performanceKeeper_.get());
        runtime_.GetSound().GetCapture().SetBlockWatcher(performanceKeeper_.get());
    }
    if (performance_) {
        const auto atEnd = entry_.attendance == Attendance::kUnattended ? PerformancePlayer::AtEnd::kEndProgram
                                                                        : PerformancePlayer::AtEnd::kGoOn;
        performancePlayer_ = std::make_unique<PerformancePlayer>(*this, performance_, options_.screenshots, atEnd);
        performancePlayer_->Start();
    }
    if (notices_ && !performance_) notices_->OfferKeys();
    parts_.loopDriver.Run(*this);
}

bool Phone::OnHostKey(std::string_view code, KeyPhase phase) {
    const bool isTakeKey = code == "F9";
    const bool isFullScreenKey = code == "F11";
    if (phase == KeyPhase::kDown && isTakeKey) runtime_.GetSound().ToggleTake(parts_.clock.LocalTime());
    if (phase == KeyPhase::kDown && isFullScreenKey) parts_.window.ToggleFullScreen();
    return isTakeKey || isFullScreenKey;
}

void Phone::RequestEnd() {
    isEndRequested_ = true;
    parts_.loopDriver.Wake();
}

void Phone::OnPerformed(const PerformanceAction& action) {
    if (performanceKeeper_) performanceKeeper_->Keep(action);
}

void Phone::EnterForeground() {
    if (isForeground_ || application_ == nullptr) return;
    isForeground_ = true;
    OnPerformed(StateAction{StateChange::kForeground});
    runtime_.GetTrace().Add("app", "foreground");
    runtime_.GetScreen().ResumeInput();
    application_->OnForeground();
}

void Phone::EnterBackground() {
    if (!isForeground_ || application_ == nullptr) return;
    isForeground_ = false;
    OnPerformed(StateAction{StateChange::kBackground});
    runtime_.GetTrace().Add("app", "background");
    runtime_.GetScreen().SuspendInput();
    application_->OnBackground();
    if (midiVoice_) midiVoice_->Silence();
}

void Phone::TurnScreenOn() {
    if (isScreenOn_ || application_ == nullptr) return;
    isScreenOn_ = true;
    OnPerformed(StateAction{StateChange::kScreenOn});
    runtime_.GetTrace().Add("app", "screen-on");
    application_->OnScreenOn();
}

void Phone::TurnScreenOff() {
    if (!isScreenOn_ || application_ == nullptr) return;
    isScreenOn_ = false;
    OnPerformed(StateAction{StateChange::kScreenOff});
    runtime_.GetTrace().Add("app", "screen-off");
    application_->OnScreenOff();
}

Microseconds Phone::RunStep(Microseconds now) {
    if (hasEnded_) return kNever;
    runtime_.GetLoop().RunDue(now, isEndRequested_);
    if (isEndRequested_) {
        End();
        return kNever;
    }
    const Microseconds nextFrame = runtime_.GetScreen().ComposeIfDue(now);
    runtime_.GetTrace().Flush();
    if (nextFrame == kNever && std::exchange(isTimeForTheRest_, false)) {
        runtime_.GetSound().Open();
        if (entry_.attendance == Attendance::kAttended) parts_.window.SetIcon(runtime_.GetPackage().LoadIcon());
    }
    const Microseconds due = std::min(nextFrame, runtime_.GetLoop().NextDue());
    // Where somebody waits for the next screen, its pictures are made ready while there is nothing to do.
    const bool isIdle = entry_.attendance == Attendance::kAttended && due > now;
    return isIdle && runtime_.GetPackage().DecodeNext() ? now : due;
}

void Phone::End() {
    Trace& trace = runtime_.GetTrace();
    trace.Add("app", "terminating");
    if (midiVoice_) {
        runtime_.GetSound().SetToneWatcher(nullptr);
        midiVoice_->Finish();
    }
    // Silence first: what the application takes its time for afterwards is not heard.
    runtime_.CloseSound();
    performancePlayer_.reset();
    if (performanceKeeper_) performanceKeeper_->Finish();
    if (notices_) notices_->Save();
    placeKeeper_.Save();
    notices_.reset();
    application_->OnEnd();
    application_.reset();
    runtime_.GetLoop().Clear();
    trace.Add("app", "ended");
    trace.Add("end")
        .Number("frames", static_cast<std::int64_t>(runtime_.GetScreen().GetCompositor().FramesComposed()))
        .Number("blocks", static_cast<std::int64_t>(runtime_.GetSound().GetCapture().BlocksDelivered()))
        .Number("underruns", static_cast<std::int64_t>(runtime_.GetSound().Underruns()));
    trace.Close();
    hasEnded_ = true;
    // Within Run the entry point's result is still to come.
    if (!isInRun_) TellEnd(0);
}

void Phone::TellEnd(int result) {
    const int status = result == 0 && runtime_.GetConsole().HasLoss() ? kLostSomething : result;
    if (const EndHandler onEnd = std::exchange(onEnd_, nullptr)) onEnd(status);
}

void Phone::OnVisibilityChanged(Visibility visibility) {
    runtime_.GetLoop().BeginInput();
    visibility_ = visibility;
    runtime_.GetScreen().SetVisibility(visibility);
    if (visibility == Visibility::kVisible) {
        EnterForeground();
    } else {
        EnterBackground();
    }
}

}  // namespace host
