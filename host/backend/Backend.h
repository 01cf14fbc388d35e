#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "backend/Clock.h"
#include "backend/LoopDriver.h"
#include "backend/Microphone.h"
#include "backend/MidiPort.h"
#include "backend/Painter.h"
#include "backend/Speaker.h"
#include "backend/Storage.h"
#include "backend/Window.h"

namespace host {

/// The parts of a back end. They live as long as it does.
struct BackendParts {
    Clock& clock;
    LoopDriver& loopDriver;
    Window& window;
    Painter& painter;
    Speaker& speaker;
    Microphone& microphone;
    Storage& storage;
    MidiPort* midiPort = nullptr;  ///< null where there is no sequencer
};

/// Everything that differs between a desktop, a test and a browser, as one set made by one factory.
class Backend {
public:
    virtual ~Backend() = default;

    [[nodiscard]] virtual BackendParts Parts() = 0;
};

struct BackendOptions {
    std::string packageRoot;  ///< with a separator at its end
    std::string dataRoot;     ///< with a separator at its end; empty when nothing can be kept
};

/// Whether a person is in front of it, who ends the program. Nobody ends an unattended one: it ends by itself after its
/// performance.
enum class Attendance { kAttended, kUnattended };
/// Whether it has a microphone of its own. One without hears performances and breath files.
enum class MicrophoneSupport { kDevice, kNone };

/// A row of the launcher's table of back ends.
struct BackendEntry {
    std::string_view name;
    Attendance attendance = Attendance::kAttended;
    MicrophoneSupport microphone = MicrophoneSupport::kDevice;
    /// Whether it can work on this machine now.
    bool (*isAvailable)() = nullptr;
    std::unique_ptr<Backend> (*create)(const BackendOptions& options) = nullptr;
    /// The libraries that it stands on, with the versions that are loaded: "Cairo 1.16.0, Pango 1.50.12".
    std::string (*libraries)() = nullptr;
};

}  // namespace host
