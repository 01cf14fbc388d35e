#pragma once

#include <memory>
#include <optional>
#include <string>

#include "backend/Backend.h"
#include "runtime/Console.h"
#include "runtime/loop/EventLoop.h"
#include "runtime/trace/Trace.h"

namespace host {

class Package;
class Performance;
class PerformancePlayer;
class Screen;
class Sound;

/// Whether a language without texts is refused, or English takes its place.
enum class LanguageChoice { kAskedFor, kPreferred };

/// What the launcher decided before anything starts.
struct RuntimeOptions {
    PixelSize screen{720, 1280};  ///< the phone's own pixels
    std::string language = "en";
    LanguageChoice languageChoice = LanguageChoice::kPreferred;
    int ringtoneVolume = 11;                ///< 0..15
    bool isMicrophoneSimulated = false;     ///< the breath comes from files and performances, not from a device
    std::optional<std::string> recordPath;  ///< a WAV file to write
    std::optional<std::string> breathPath;  ///< a WAV file that the simulated microphone hears
    std::optional<std::string> tracePath;
    bool hasTraceTimers = false;
    std::string screenshotFolder = ".";
    std::shared_ptr<const Performance> performance;  ///< what is played, if anything
    bool endsAfterPerformance = false;               ///< in headless nothing else would end the program
};

/// What the application answers to the runtime; the framework's UiApp implements it.
class ApplicationListener {
public:
    virtual void OnForeground() = 0;
    virtual void OnBackground() = 0;
    virtual void OnScreenOn() = 0;
    virtual void OnScreenOff() = 0;
    /// Ends the application: its last callbacks, then its frame and forms. Nothing is delivered to it afterwards.
    virtual void OnEnd() = 0;

protected:
    ~ApplicationListener() = default;
};

/// The phone around the one application: it owns the event loop, the screen, the sound and the package, and passes news
/// of the back end on to them. One object a process at a time, which Current() finds; UI thread only.
class Runtime final : private LoopClient, private WindowListener {
public:
    Runtime(Backend& backend, RuntimeOptions options);
    ~Runtime();
    Runtime(const Runtime&) = delete;
    Runtime& operator=(const Runtime&) = delete;

    /// The runtime of this process. There is one from the launcher's start to its end.
    [[nodiscard]] static Runtime& Current();

    /// Loads the package, opens the window and the sound. False with one line in `problem` when the program cannot run.
    [[nodiscard]] bool Open(std::string& problem);
    /// Runs until the application has ended.
    void Run(ApplicationListener& application);
    /// Ends the application after the handler that is running. Any number of times.
    void RequestEnd();

    [[nodiscard]] EventLoop& GetLoop() { return loop_; }
    [[nodiscard]] Trace& GetTrace() { return trace_; }
    [[nodiscard]] Console& GetConsole() { return console_; }
    [[nodiscard]] Storage& GetStorage() { return backend_.GetStorage(); }
    [[nodiscard]] Painter& GetPainter() { return backend_.GetPainter(); }
    [[nodiscard]] Screen& GetScreen() { return *screen_; }
    [[nodiscard]] Package& GetPackage() { return *package_; }
    [[nodiscard]] Sound& GetSound() { return *sound_; }
    /// The phone's screen in its own pixels.
    [[nodiscard]] PixelSize GetScreenSize() const { return options_.screen; }

    /// The phone's ringtone volume, 0..15.
    [[nodiscard]] int GetRingtoneVolume() const { return ringtoneVolume_; }
    /// Values outside of 0..15 are brought to the nearer end.
    void SetRingtoneVolume(int volume);

    // The application's and the screen's state, as the phone changes it. A change to the state it is in is passed over.
    void SetForeground(bool isForeground);
    void SetScreenOn(bool isScreenOn);

private:
    class KeyEffects;

    // LoopClient
    Microseconds RunStep(Microseconds now) override;
    [[nodiscard]] bool HasEnded() const override { return hasEnded_; }
    // WindowListener
    void OnTouch(const TouchInput& touch) override;
    void OnKey(const KeyInput& key) override;
    void OnInputLost() override;
    void OnResized() override;
    void OnExposed() override;
    void OnVisibilityChanged(bool isVisible) override;
    void OnCloseRequested() override;

    // Delivers what was posted before the input, so that both keep their order.
    void BeforeInput();
    [[nodiscard]] bool CheckPerformance(std::string& problem) const;
    void End();

    Backend& backend_;
    RuntimeOptions options_;
    EventLoop loop_;
    Trace trace_;
    Console console_;
    std::unique_ptr<KeyEffects> keyEffects_;
    std::unique_ptr<Package> package_;
    std::unique_ptr<Screen> screen_;
    std::unique_ptr<Sound> sound_;
    std::unique_ptr<PerformancePlayer> performancePlayer_;
    ApplicationListener* application_ = nullptr;
    int ringtoneVolume_ = 0;
    bool isOpen_ = false;
    bool isForeground_ = false;
    bool isScreenOn_ = true;
    bool isEndRequested_ = false;
    bool hasEnded_ = false;
};

}  // namespace host
