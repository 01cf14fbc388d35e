#pragma once

#include <memory>

#include "backend/desktop/waiting/DisplayWait.h"
#include "backend/desktop/waiting/WakeDescriptor.h"
#include "backend/desktop/window/DesktopWindow.h"

namespace host {

/// Sleeps on the X server's connection itself. SDL's own wait asks that connection for news some twenty times a turn,
/// and is woken only by way of a thread and of the X server; with a microphone's block every 20 ms that was most of
/// what the idle program did. UI thread only, but for Wake.
class X11Wait final : public DisplayWait {
public:
    /// Null where SDL's display is no X server, or the process has no descriptor left.
    static std::unique_ptr<DisplayWait> Create(const Clock& clock, const DesktopWindow& window);

    X11Wait(const Clock& clock, const DesktopWindow& window) : clock_(clock), window_(window) {}

    void Wake() noexcept override { wakes_.Wake(); }
    void Collect() override;
    void SleepUntil(Microseconds due) override;

private:
    /// What Xlib knows of the connection, read without a call to it.
    struct Connection {
        int descriptor = -1;
        unsigned long nextRequest = 0;
    };

    [[nodiscard]] Connection Look() const;
    /// Whether Xlib may hold events that it has read already, and that the descriptor therefore does not show.
    [[nodiscard]] bool MayHoldEvents() const;
    void Pump();

    const Clock& clock_;
    const DesktopWindow& window_;
    WakeDescriptor wakes_;
    bool isReadable_ = true;
    unsigned long pumpedAtRequest_ = 0;
    Microseconds nextPump_ = 0;
    Microseconds heardAt_ = 0;  ///< when the display was last heard of
};

}  // namespace host
