// What the desktop back end supports:
//   clock        the machine's monotonic one
//   loop driver  waits for events and due times, woken from any thread; Ctrl-C and kill ask the window to close
//   window       X11 and Wayland through SDL2, resizable, high resolutions; every touch screen, mouse, keys by position
//   painter      Cairo and Pango
//   speaker      the default device at its own rate, 256 frames asked for; found again by itself when it is lost
//   microphone   the default device, converted to the wanted format; found again by itself when it is lost
//   storage      files
//   MIDI         a port of ALSA's sequencer

#include "backend/desktop/DesktopBackend.h"

#include <cstdlib>
#include <string>
#include <utility>

#include "backend/cairo/CairoPainter.h"
#include "backend/desktop/SdlLibrary.h"
#include "backend/desktop/midi/AlsaMidiPort.h"
#include "backend/desktop/sound/DesktopMicrophone.h"
#include "backend/desktop/sound/DesktopSpeaker.h"
#include "backend/desktop/waiting/DesktopLoopDriver.h"
#include "backend/desktop/window/DesktopWindow.h"
#include "backend/posix/MonotonicClock.h"
#include "backend/posix/PosixStorage.h"

namespace host {

namespace {

class DesktopBackend final : public Backend {
public:
    DesktopBackend(const BackendOptions& options, std::unique_ptr<SdlSubsystem> video)
        : video_(std::move(video)), storage_(options.packageRoot, options.dataRoot) {}

    [[nodiscard]] BackendParts Parts() override {
        return {clock_, loopDriver_, window_, painter_, speaker_, microphone_, storage_, &midiPort_};
    }

private:
    std::unique_ptr<SdlSubsystem> video_;  ///< null without a display; the window then does not open
    MonotonicClock clock_;
    CairoPainter painter_;
    DesktopWindow window_{painter_};
    DesktopSpeaker speaker_{clock_};
    DesktopMicrophone microphone_{clock_};
    DesktopLoopDriver loopDriver_{clock_, window_, speaker_, microphone_};
    PosixStorage storage_;
    AlsaMidiPort midiPort_;
};

bool IsSet(const char* name) {
    const char* const value = std::getenv(name);
    return value != nullptr && *value != '\0';
}

/// Null when there is no sign of a display, or none of those that there are signs of can be reached.
std::unique_ptr<SdlSubsystem> ConnectToDisplay() {
    // Left to itself SDL ends with a window that nobody sees, or takes a text console over from somebody who is logged
    // in from afar; and its search complains on stderr where there is no Wayland.
    std::string drivers;
    if (IsSet("DISPLAY")) drivers = "x11";
    if (IsSet("WAYLAND_DISPLAY") && IsSet("XDG_RUNTIME_DIR")) drivers += drivers.empty() ? "wayland" : ",wayland";
    if (drivers.empty() && !IsSet(SDL_HINT_VIDEODRIVER)) return nullptr;
    SDL_SetHint(SDL_HINT_VIDEODRIVER, drivers.c_str());  // A user's own choice overrules it.
    auto video = std::make_unique<SdlSubsystem>(SDL_INIT_VIDEO);
    return video->IsWorking() ? std::move(video) : nullptr;
}

/// The connection that IsDesktopAvailable has made: making it is half of the time that a window takes.
std::unique_ptr<SdlSubsystem>& KeptVideo() {
    static std::unique_ptr<SdlSubsystem> video;
    return video;
}

}  // namespace

std::unique_ptr<Backend> CreateDesktopBackend(const BackendOptions& options) {
    std::unique_ptr<SdlSubsystem> video = std::exchange(KeptVideo(), nullptr);
    if (!video) video = ConnectToDisplay();
    return std::make_unique<DesktopBackend>(options, std::move(video));
}

bool IsDesktopAvailable() {
    if (!KeptVideo()) KeptVideo() = ConnectToDisplay();
    return KeptVideo() != nullptr;
}

std::string DesktopLibraries() {
    SDL_version sdl{};
    SDL_GetVersion(&sdl);
    return "SDL " + std::to_string(sdl.major) + '.' + std::to_string(sdl.minor) + '.' + std::to_string(sdl.patch) +
           ", " + AlsaMidiPort::Library() + ", " + CairoPainter::Libraries();
}

}  // namespace host
