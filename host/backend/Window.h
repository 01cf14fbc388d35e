#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "backend/Accessible.h"
#include "backend/Clock.h"
#include "backend/Geometry.h"
#include "backend/Image.h"
#include "backend/Painter.h"

namespace host {

enum class TouchPhase { kDown, kMove, kUp, kCancel };

/// One finger's news, in the window's device pixels. A mouse is one more finger.
struct TouchInput {
    std::int64_t finger = 0;
    TouchPhase phase = TouchPhase::kDown;
    double x = 0;
    double y = 0;
};

enum class KeyPhase { kDown, kRepeat, kUp };
enum class ShiftKey { kReleased, kHeld };

/// A key by its position: `code` is a name of the W3C's "UI Events KeyboardEvent code Values" (KeyR, Space, Escape).
struct KeyInput {
    std::string_view code;
    KeyPhase phase = KeyPhase::kDown;
    ShiftKey shift = ShiftKey::kReleased;
};

/// The shape of a mouse's pointer.
enum class Pointer { kArrow, kHand };

/// Receives what is done on a window and what becomes of its pixels, on the UI thread.
class InputListener {
public:
    virtual void OnTouch(const TouchInput& touch) = 0;
    virtual void OnKey(const KeyInput& key) = 0;
    /// Every finger and every key is to be taken as lifted.
    virtual void OnInputLost() = 0;
    /// The window's size or scale is another one now; all of it must be painted.
    virtual void OnResized() = 0;
    /// The window's pixels were lost; all of it must be presented again.
    virtual void OnExposed() = 0;
    /// The shape of the pointer at that place, in the window's device pixels: a hand over what can be pressed.
    [[nodiscard]] virtual Pointer PointerAt(double /*x*/, double /*y*/) const { return Pointer::kArrow; }

protected:
    ~InputListener() = default;
};

enum class Visibility { kHidden, kVisible };

/// Receives what becomes of a window as a whole, on the UI thread.
class WindowListener {
public:
    virtual void OnVisibilityChanged(Visibility visibility) = 0;
    virtual void OnCloseRequested() = 0;

protected:
    ~WindowListener() = default;
};

/// Where a window's frame lies on the desktop, and how large the window is within it, in the desktop's own units.
struct WindowPlace {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    friend bool operator==(const WindowPlace&, const WindowPlace&) = default;
};

/// The one window. UI thread only.
class Window {
public:
    virtual ~Window() = default;

    /// Opens the window for a phone screen of `screen` pixels; false when there is no display for it.
    [[nodiscard]] virtual bool Open(std::string_view title, PixelSize screen, WindowListener& listener,
                                    InputListener& input) = 0;
    /// Where the window is to open, as Place() once told. What does not fit the displays of today is fitted to them,
    /// and a place that is on none of them is the desktop's to choose.
    virtual void SetPlace(const WindowPlace& /*place*/) {}
    /// Where the open window is, or was before it filled the display; nothing where windows have no places.
    [[nodiscard]] virtual std::optional<WindowPlace> Place() const { return std::nullopt; }
    /// No listener is called after this.
    virtual void Close() = 0;
    /// Gives the open window its picture for the desktop's title bars and lists. Where there are none, nothing happens.
    virtual void SetIcon(const Image& /*icon*/) {}
    /// What the open window shows, in words; it holds until Close. Where nothing reads it, nothing happens.
    virtual void SetAccessible(Accessible& /*screen*/) {}

    /// Fills the display with the open window, or ends that. Where there is no other size, nothing happens.
    virtual void ToggleFullScreen() {}

    /// Device pixels.
    [[nodiscard]] virtual PixelSize Size() const = 0;
    /// The pixels to compose on, of Size() and scale 1. They keep their content from one frame to the next; the
    /// reference holds until the next OnResized or OnExposed.
    [[nodiscard]] virtual Surface& Pixels() = 0;
    /// Shows the given rectangles of Pixels().
    virtual void Present(std::span<const PixelRect> damage) = 0;
    /// The time between two frames of the display.
    [[nodiscard]] virtual Microseconds FrameInterval() const = 0;
};

}  // namespace host
