#pragma once

#include <memory>
#include <string>
#include <vector>

#include "backend/Backend.h"
#include "runtime/Console.h"
#include "runtime/Options.h"
#include "runtime/loop/EventLoop.h"
#include "runtime/trace/Trace.h"

namespace host {

class AccessibleTree;
class Package;
class Screen;
class Sound;

/// What the framework's classes are made of: the event loop, the package, the screen, the sound and the trace, on one
/// back end. One object a process at a time, which Current() finds; UI thread only. It decides nothing about the
/// application's life, which is the Phone's.
class Runtime final {
public:
    /// The parts must outlive it.
    Runtime(const BackendParts& parts, const Options& options, MicrophoneSupport microphone);
    ~Runtime();
    Runtime(const Runtime&) = delete;
    Runtime& operator=(const Runtime&) = delete;

    [[nodiscard]] static Runtime& Current();

    /// Reads the package and opens every file of the options, so that whatever cannot be had is known before anything
    /// is shown, heard or emptied. False with one line in `problem`. What is wrong with the package stops nothing: it
    /// is told on the console when the window is open.
    [[nodiscard]] bool Prepare(std::string& problem);
    /// Opens the window; the sound is still to be opened. False with one line in `problem` when there is no display.
    [[nodiscard]] bool Open(WindowListener& listener, std::string& problem);
    /// Silence: nothing is heard or delivered any more.
    void CloseSound() noexcept;

    [[nodiscard]] EventLoop& GetLoop() { return loop_; }
    [[nodiscard]] Trace& GetTrace() { return trace_; }
    [[nodiscard]] Console& GetConsole() { return console_; }
    [[nodiscard]] Storage& GetStorage() { return parts_.storage; }
    [[nodiscard]] Painter& GetPainter() { return parts_.painter; }
    [[nodiscard]] Screen& GetScreen() { return *screen_; }
    [[nodiscard]] Package& GetPackage() { return *package_; }
    [[nodiscard]] Sound& GetSound() { return *sound_; }
    /// The phone's screen in its own pixels.
    [[nodiscard]] PixelSize GetScreenSize() const { return options_.screen; }

private:
    [[nodiscard]] bool PrepareTrace(std::string& problem);

    const BackendParts parts_;
    const Options& options_;
    EventLoop loop_;
    Console console_;
    Trace trace_;
    std::unique_ptr<Package> package_;
    std::unique_ptr<Sound> sound_;
    std::unique_ptr<Screen> screen_;
    std::unique_ptr<AccessibleTree> accessible_;
    std::vector<std::string> packageFaults_;
    bool isOpen_ = false;
};

}  // namespace host
