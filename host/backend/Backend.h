#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "backend/Clock.h"
#include "backend/LoopDriver.h"
#include "backend/Microphone.h"
#include "backend/Painter.h"
#include "backend/Speaker.h"
#include "backend/Storage.h"
#include "backend/Window.h"

namespace host {

/// Everything that differs between a desktop, a test and a browser, as one set made by one factory. The runtime takes
/// references and never outlives it.
class Backend {
public:
    virtual ~Backend() = default;

    [[nodiscard]] virtual Clock& GetClock() = 0;
    [[nodiscard]] virtual LoopDriver& GetLoopDriver() = 0;
    [[nodiscard]] virtual Window& GetWindow() = 0;
    [[nodiscard]] virtual Painter& GetPainter() = 0;
    [[nodiscard]] virtual Speaker& GetSpeaker() = 0;
    [[nodiscard]] virtual Microphone& GetMicrophone() = 0;
    [[nodiscard]] virtual Storage& GetStorage() = 0;
};

struct BackendOptions {
    std::string packageRoot;  ///< with a separator at its end
    std::string dataRoot;     ///< with a separator at its end
};

/// A row of the launcher's table of back ends.
struct BackendEntry {
    std::string_view name;
    /// Whether it can work on this machine now.
    bool (*isAvailable)();
    std::unique_ptr<Backend> (*create)(const BackendOptions& options);
};

}  // namespace host
