#pragma once

#include <X11/Xlib.h>

#include <cstdint>
#include <memory>
#include <string>

#include "backend/Geometry.h"

/// The X server as another program sees it: what it really shows, and what a window manager would do to our window.
class XScreen {
public:
    /// Finds the window of that title on the display of the environment; throws when there is none.
    explicit XScreen(const std::string& title);

    /// The colour that the server shows at a point of the window.
    [[nodiscard]] host::Rgba ColorAt(int x, int y) const;
    /// Where the server has the window, in pixels of the whole display.
    [[nodiscard]] host::PixelRect Bounds() const;
    void Resize(host::PixelSize size);
    /// As the close button does.
    void AskToClose();
    void GiveFocus();
    void TakeFocus();

private:
    struct Closer {
        void operator()(Display* display) const noexcept { XCloseDisplay(display); }
    };

    std::unique_ptr<Display, Closer> display_;
    Window window_ = 0;
};
