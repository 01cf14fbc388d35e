#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "backend/Window.h"
#include "backend/cairo/CairoPainter.h"
#include "backend/desktop/SdlLibrary.h"
#include "backend/desktop/window/FingerTable.h"

namespace host {

/// A window of the desktop, with pixels in memory that the display server copies from. UI thread only; its listeners
/// are called from within HandleEvent and FinishEvents.
class DesktopWindow final : public Window {
public:
    explicit DesktopWindow(CairoPainter& painter);
    ~DesktopWindow() override;
    DesktopWindow(const DesktopWindow&) = delete;
    DesktopWindow& operator=(const DesktopWindow&) = delete;

    /// The window has the screen's shape and is as large as the screen, or less where the desktop is smaller.
    [[nodiscard]] bool Open(std::string_view title, PixelSize screen, WindowListener& listener,
                            InputListener& input) override;
    void SetPlace(const WindowPlace& place) override { wantedPlace_ = place; }
    [[nodiscard]] std::optional<WindowPlace> Place() const override;
    void Close() override;
    void SetIcon(const Image& icon) override;
    void ToggleFullScreen() override;

    [[nodiscard]] PixelSize Size() const override { return pixels_->Size(); }
    [[nodiscard]] Surface& Pixels() override { return *pixels_; }
    void Present(std::span<const PixelRect> damage) override;
    [[nodiscard]] Microseconds FrameInterval() const override { return frameInterval_; }

    /// Null while it is closed.
    [[nodiscard]] SDL_Window* Handle() const { return window_.get(); }
    /// Takes an event of SDL's queue; those that are none of a window's are passed over.
    void HandleEvent(const SDL_Event& event);
    /// Called when the queue is empty: reports a resize or an exposure once, however many events told of it, and a lost
    /// focus unless the window was hidden in the same breath.
    void FinishEvents();
    /// The program is asked to end, by a signal for example.
    void RequestClose();

private:
    struct WindowReleaser {
        void operator()(SDL_Window* window) const noexcept { SDL_DestroyWindow(window); }
        void operator()(SDL_Surface* surface) const noexcept { SDL_FreeSurface(surface); }
        void operator()(SDL_Cursor* cursor) const noexcept { SDL_FreeCursor(cursor); }
    };

    void HandleWindowEvent(const SDL_WindowEvent& event);
    void HandleFinger(const SDL_TouchFingerEvent& event);
    void HandleMouseButton(const SDL_MouseButtonEvent& event);
    void HandleKey(const SDL_KeyboardEvent& event);
    void SendMouse(TouchPhase phase, int x, int y);
    /// The mouse's place, which SDL gives in the desktop's units.
    [[nodiscard]] PointF ToPixels(int x, int y) const;
    /// Gives the mouse's pointer the shape for what is under it.
    void ShowPointer(int x, int y);
    void FlushLostInput();
    void SetVisibility(Visibility visibility);
    void TakePixels();
    void MeasureFrameInterval();
    /// Unless the window fills the display, or is hidden, now.
    void NotePlace();
    /// Nothing while the window is hidden, or fills the display.
    [[nodiscard]] std::optional<WindowPlace> PlaceNow() const;
    /// As on an X server without a window manager. A frame is told only some time after the window is open.
    [[nodiscard]] bool HasNoFrame() const;

    CairoPainter& painter_;
    std::unique_ptr<SDL_Window, WindowReleaser> window_;
    SDL_Surface* target_ = nullptr;  ///< the window's own; SDL's
    /// Where the display has other pixels than Cairo: what Cairo draws on, to be converted when it is presented.
    std::vector<unsigned char> shadow_;
    std::unique_ptr<SDL_Surface, WindowReleaser> shadowSurface_;
    std::unique_ptr<Surface> pixels_;
    std::vector<SDL_Rect> presented_;

    WindowListener* listener_ = nullptr;
    InputListener* input_ = nullptr;
    FingerTable fingers_;
    bool isMouseDown_ = false;
    Pointer pointer_ = Pointer::kArrow;
    std::unique_ptr<SDL_Cursor, WindowReleaser> hand_;
    PointF mouseAt_;
    Visibility visibility_ = Visibility::kVisible;
    bool isInputLost_ = false;  ///< and not reported yet
    bool isResized_ = false;
    bool isExposed_ = false;
    Microseconds frameInterval_;
    std::optional<WindowPlace> wantedPlace_;
    std::optional<WindowPlace> place_;  ///< as of when it was last neither hidden nor full
    bool isUnmanaged_ = false;          ///< when it was last made to fill the display
};

}  // namespace host
