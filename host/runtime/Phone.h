#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "backend/Backend.h"
#include "runtime/Application.h"
#include "runtime/Options.h"
#include "runtime/Runtime.h"
#include "runtime/performance/Performance.h"
#include "runtime/window/PlaceKeeper.h"

namespace host {

class MidiVoice;
class Notices;
class PerformanceKeeper;
class PerformancePlayer;

/// The application's entry point.
using EntryPoint = int (*)(int argc, char* argv[]);

/// A phone with one application: it owns the back end, the runtime on it and the application, and decides when the
/// application is in the foreground and when it ends. It lives until its owner destroys it, also where the back end's
/// loop returns at once. One object a process at a time, which Current() finds; UI thread only.
class Phone final : private LoopClient, private WindowListener {
public:
    Phone(const BackendEntry& entry, const BackendOptions& backendOptions, Options options);
    ~Phone();
    Phone(const Phone&) = delete;
    Phone& operator=(const Phone&) = delete;

    [[nodiscard]] static Phone& Current();

    /// Checks everything that was asked for, then opens the window and the sound. False with one line in `problem` when
    /// something cannot be had: nothing is shown, opened or emptied then.
    [[nodiscard]] bool Open(std::string& problem);

    /// 0, what the application's entry point returned, or 1 when something that was asked for is lost.
    using EndHandler = std::function<void(int exitStatus)>;
    /// Calls the entry point, which makes the application and hands it over with Start. `onEnd` is called once, when
    /// the application has ended: before Run returns where the back end's loop waits, else later from one of its steps.
    /// It must not destroy the phone.
    void Run(EntryPoint entryPoint, EndHandler onEnd);
    /// The application is up: runs it in the back end's loop, which may return at once.
    void Start(std::unique_ptr<Application> application);
    /// Ends the application after the handler that is running. Any number of times.
    void RequestEnd();

    // The application's and the screen's state. A change to the state that it is in is passed over.
    /// Fingers and keys that were down before the background are lifted first.
    void EnterForeground();
    /// From now on nothing is delivered of fingers and keys.
    void EnterBackground();
    void TurnScreenOn();
    void TurnScreenOff();

    /// A performance has done something to the phone that is neither finger nor key nor breath.
    void OnPerformed(const PerformanceAction& action);

    [[nodiscard]] Runtime& GetRuntime() { return runtime_; }

private:
    // LoopClient
    Microseconds RunStep(Microseconds now) override;
    [[nodiscard]] bool HasEnded() const override { return hasEnded_; }
    // WindowListener
    void OnVisibilityChanged(Visibility visibility) override;
    void OnCloseRequested() override { RequestEnd(); }

    /// The host's own keys: F9 records, F11 is full screen.
    bool OnHostKey(std::string_view code, KeyPhase phase);
    [[nodiscard]] bool PreparePerformance(std::string& problem);
    [[nodiscard]] bool PrepareKeeper(std::string& problem);
    /// Opens the file and the port of the options, and tells neither anything yet.
    [[nodiscard]] bool PrepareMidi(std::string& problem);
    void StartMidi();
    void End();
    void TellEnd(int result);

    const BackendEntry entry_;
    const Options options_;
    const std::unique_ptr<Backend> backend_;
    const BackendParts parts_;
    Runtime runtime_;
    std::shared_ptr<const Performance> performance_;
    std::unique_ptr<PerformancePlayer> performancePlayer_;
    std::unique_ptr<PerformanceKeeper> performanceKeeper_;
    PlaceKeeper placeKeeper_;
    std::unique_ptr<OutputFile> midiFile_;  ///< until the start
    std::unique_ptr<MidiVoice> midiVoice_;  ///< null without MIDI
    std::unique_ptr<Notices> notices_;      ///< where a person is in front of it
    std::unique_ptr<Application> application_;
    EndHandler onEnd_;
    bool isInRun_ = false;
    bool isForeground_ = false;
    Visibility visibility_ = Visibility::kVisible;  ///< of the window
    bool isScreenOn_ = true;
    bool isTimeForTheRest_ = false;
    bool isEndRequested_ = false;
    bool hasEnded_ = false;
};

}  // namespace host
