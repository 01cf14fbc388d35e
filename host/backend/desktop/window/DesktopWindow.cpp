#include "backend/desktop/window/DesktopWindow.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>
#include <utility>

#include "backend/desktop/window/KeyCodes.h"

namespace host {

namespace {

constexpr Microseconds kUsualFrameInterval = 16'667;
constexpr std::int64_t kMouseFinger = 0;
// The part of the desktop's free area that the window takes at most, for the frame that the window manager adds: how
// much that is can be asked only when the window is there.
constexpr double kShareOfDesktop = 0.92;
// The window may be made as small as half of the phone's screen: the smallest texts are 9 pixels then.
constexpr int kSmallestDivisor = 2;
constexpr int kPixelBits = 32;
constexpr std::size_t kPixelBytes = 4;

bool IsOfTouchScreen(Uint32 mouse) {
    return mouse == SDL_TOUCH_MOUSEID;
}

PixelSize FittingSize(PixelSize screen) {
    SDL_Rect usable{};
    if (SDL_GetDisplayUsableBounds(0, &usable) != 0) return screen;
    const double scale =
        std::min({1.0, usable.w * kShareOfDesktop / screen.width, usable.h * kShareOfDesktop / screen.height});
    return {static_cast<int>(std::lround(screen.width * scale)), static_cast<int>(std::lround(screen.height * scale))};
}

// The wanted place as far as the displays of today have it: none of them is smaller than the window, and the window can
// be taken by its upper edge. With SDL's own word for the desktop's choice otherwise.
WindowPlace FittingPlace(WindowPlace wanted, PixelSize usual) {
    if (wanted.width <= 0 || wanted.height <= 0)
        return {SDL_WINDOWPOS_UNDEFINED, SDL_WINDOWPOS_UNDEFINED, usual.width, usual.height};
    SDL_Rect usable{};
    const int displays = SDL_GetNumVideoDisplays();
    const SDL_Point grip{wanted.x + wanted.width / 2, wanted.y};
    for (int display = 0; display < displays; ++display) {
        if (SDL_GetDisplayUsableBounds(display, &usable) != 0 || SDL_PointInRect(&grip, &usable) == SDL_FALSE) continue;
        wanted.width = std::min(wanted.width, usable.w);
        wanted.height = std::min(wanted.height, usable.h);
        return wanted;
    }
    if (SDL_GetDisplayUsableBounds(0, &usable) == 0) {
        wanted.width = std::min(wanted.width, usable.w);
        wanted.height = std::min(wanted.height, usable.h);
    }
    wanted.x = wanted.y = SDL_WINDOWPOS_UNDEFINED;
    return wanted;
}

}  // namespace

DesktopWindow::DesktopWindow(CairoPainter& painter)
    : painter_(painter), pixels_(painter.CreateOpaqueSurface({})), frameInterval_(kUsualFrameInterval) {}

DesktopWindow::~DesktopWindow() {
    Close();
}

bool DesktopWindow::Open(std::string_view title, PixelSize screen, WindowListener& listener, InputListener& input) {
    Close();
    if (SDL_WasInit(SDL_INIT_VIDEO) == 0) return false;
    // By default SDL sends a window's pixels through OpenGL, which takes ten times as long for a part of the window and
    // 90 MiB of memory. Wayland has no other way.
    if (std::string_view(SDL_GetCurrentVideoDriver()) != "wayland") {
        SDL_SetHint(SDL_HINT_FRAMEBUFFER_ACCELERATION, "0");
    }
    const PixelSize size = FittingSize(screen);
    const WindowPlace place = FittingPlace(wantedPlace_.value_or(WindowPlace{}), size);
    window_.reset(SDL_CreateWindow(std::string(title).c_str(), place.x, place.y, place.width, place.height,
                                   SDL_WINDOW_RESIZABLE | SDL_WINDOW_ALLOW_HIGHDPI));
    if (!window_) return false;
    SDL_SetWindowMinimumSize(window_.get(), std::max(1, std::min(size.width, screen.width / kSmallestDivisor)),
                             std::max(1, std::min(size.height, screen.height / kSmallestDivisor)));
    // Keys are positions here; an input method that waits for text would swallow them.
    SDL_StopTextInput();
    TakePixels();
    if (target_ == nullptr) {
        Close();
        return false;
    }
    MeasureFrameInterval();
    NotePlace();
    visibility_ = Visibility::kVisible;
    listener_ = &listener;
    input_ = &input;
    return true;
}

void DesktopWindow::Close() {
    listener_ = nullptr;
    input_ = nullptr;
    fingers_.LiftAll();
    isMouseDown_ = isInputLost_ = isResized_ = isExposed_ = false;
    pixels_ = painter_.CreateOpaqueSurface({});
    shadowSurface_.reset();
    target_ = nullptr;
    hand_.reset();
    pointer_ = Pointer::kArrow;
    window_.reset();
}

void DesktopWindow::SetIcon(const Image& icon) {
    if (!window_ || icon.pixels.empty()) return;
    constexpr int kBits = 32;
    constexpr int kRgbaBytes = sizeof(Rgba);
    // SDL takes a picture that may be written to, and copies it.
    std::vector<Rgba> pixels = icon.pixels;
    const std::unique_ptr<SDL_Surface, WindowReleaser> surface(SDL_CreateRGBSurfaceWithFormatFrom(
        pixels.data(), icon.size.width, icon.size.height, kBits, icon.size.width * kRgbaBytes, SDL_PIXELFORMAT_RGBA32));
    if (surface) SDL_SetWindowIcon(window_.get(), surface.get());
}

void DesktopWindow::ToggleFullScreen() {
    if (!window_) return;
    SDL_Window* const window = window_.get();
    const bool isFull = (SDL_GetWindowFlags(window) & SDL_WINDOW_FULLSCREEN_DESKTOP) != 0;
    // A window manager makes the window as large as the display, and gives it its place back. On an X server without
    // one, which puts no frame around it, nobody does, while SDL takes it for done.
    if (!isFull) {
        isUnmanaged_ = HasNoFrame();
        SDL_Rect display{};
        if (isUnmanaged_ && SDL_GetDisplayBounds(SDL_GetWindowDisplayIndex(window), &display) == 0) {
            SDL_SetWindowSize(window, display.w, display.h);
            SDL_SetWindowPosition(window, display.x, display.y);
        }
    }
    // The display keeps its own mode; the new size comes as an event.
    SDL_SetWindowFullscreen(window, isFull ? 0 : SDL_WINDOW_FULLSCREEN_DESKTOP);
    if (isFull && isUnmanaged_ && place_) {
        const WindowPlace place = *place_;
        SDL_SetWindowSize(window, place.width, place.height);
        SDL_SetWindowPosition(window, place.x, place.y);
    }
}

void DesktopWindow::Present(std::span<const PixelRect> damage) {
    if (target_ == nullptr || isResized_) return;
    const PixelRect bounds{0, 0, target_->w, target_->h};
    presented_.clear();
    for (const PixelRect& rect : damage) {
        const PixelRect visible = rect.Intersection(bounds);
        if (!visible.IsEmpty()) presented_.push_back({visible.x, visible.y, visible.width, visible.height});
    }
    if (presented_.empty()) return;
    if (shadowSurface_) {
        for (const SDL_Rect& rect : presented_) {
            SDL_Rect place = rect;
            SDL_BlitSurface(shadowSurface_.get(), &rect, target_, &place);
        }
    }
    // It fails when the window has just changed its size; the news of that is in the queue, and all is presented then.
    SDL_UpdateWindowSurfaceRects(window_.get(), presented_.data(), static_cast<int>(presented_.size()));
}

void DesktopWindow::HandleEvent(const SDL_Event& event) {
    if (listener_ == nullptr) return;
    switch (event.type) {
        case SDL_WINDOWEVENT:
            HandleWindowEvent(event.window);
            break;
        case SDL_DISPLAYEVENT:
            MeasureFrameInterval();
            break;
        case SDL_FINGERDOWN:
        case SDL_FINGERMOTION:
        case SDL_FINGERUP:
            FlushLostInput();
            HandleFinger(event.tfinger);
            break;
        case SDL_MOUSEBUTTONDOWN:
        case SDL_MOUSEBUTTONUP:
            FlushLostInput();
            HandleMouseButton(event.button);
            break;
        case SDL_MOUSEMOTION:
            if (isMouseDown_ && !IsOfTouchScreen(event.motion.which)) {
                SendMouse(TouchPhase::kMove, event.motion.x, event.motion.y);
            } else if (!IsOfTouchScreen(event.motion.which)) {
                ShowPointer(event.motion.x, event.motion.y);
            }
            break;
        case SDL_KEYDOWN:
        case SDL_KEYUP:
            FlushLostInput();
            HandleKey(event.key);
            break;
        case SDL_RENDER_TARGETS_RESET:
        case SDL_RENDER_DEVICE_RESET:
            isExposed_ = true;
            break;
        case SDL_QUIT:
            RequestClose();
            break;
        default:
            break;
    }
}

void DesktopWindow::FinishEvents() {
    if (listener_ == nullptr) return;
    FlushLostInput();
    while (const auto orphan = fingers_.TakeOrphan()) {
        input_->OnTouch({orphan->number, TouchPhase::kCancel, orphan->at.x, orphan->at.y});
    }
    if (isResized_) {
        isResized_ = isExposed_ = false;
        TakePixels();
        MeasureFrameInterval();
        input_->OnResized();
    } else if (isExposed_) {
        isExposed_ = false;
        input_->OnExposed();
    }
}

void DesktopWindow::RequestClose() {
    if (listener_ != nullptr) listener_->OnCloseRequested();
}

void DesktopWindow::HandleWindowEvent(const SDL_WindowEvent& event) {
    switch (event.event) {
        case SDL_WINDOWEVENT_SIZE_CHANGED:
            isResized_ = true;
            NotePlace();
            break;
        case SDL_WINDOWEVENT_MOVED:
            NotePlace();
            break;
        case SDL_WINDOWEVENT_EXPOSED:
            isExposed_ = true;
            break;
        case SDL_WINDOWEVENT_SHOWN:
        case SDL_WINDOWEVENT_RESTORED:
        case SDL_WINDOWEVENT_MAXIMIZED:
            SetVisibility(Visibility::kVisible);
            break;
        case SDL_WINDOWEVENT_HIDDEN:
        case SDL_WINDOWEVENT_MINIMIZED:
            SetVisibility(Visibility::kHidden);
            break;
        case SDL_WINDOWEVENT_FOCUS_LOST:
            isInputLost_ = visibility_ == Visibility::kVisible;
            break;
        case SDL_WINDOWEVENT_LEAVE:
            // While a button is held the mouse belongs to the window wherever it goes; if it is not held any more, its
            // release went elsewhere.
            if (isMouseDown_ && (SDL_GetGlobalMouseState(nullptr, nullptr) & SDL_BUTTON_LMASK) == 0) {
                isMouseDown_ = false;
                input_->OnTouch({kMouseFinger, TouchPhase::kCancel, mouseAt_.x, mouseAt_.y});
            }
            break;
        case SDL_WINDOWEVENT_DISPLAY_CHANGED:
            MeasureFrameInterval();
            break;
        default:
            break;
    }
}

void DesktopWindow::HandleFinger(const SDL_TouchFingerEvent& event) {
    if (event.touchId == SDL_MOUSE_TOUCHID) return;  // A mouse that SDL shows as a finger comes as a mouse, too.
    const PixelSize size = Size();
    const PointF at{static_cast<double>(event.x) * size.width, static_cast<double>(event.y) * size.height};
    if (event.type == SDL_FINGERDOWN) {
        FingerTable::Finger& finger = fingers_.Press(event.touchId, event.fingerId);
        finger.at = at;
        input_->OnTouch({finger.number, TouchPhase::kDown, at.x, at.y});
        return;
    }
    FingerTable::Finger* const finger = fingers_.Find(event.touchId, event.fingerId);
    if (finger == nullptr) return;
    finger->at = at;
    const std::int64_t number = finger->number;
    if (event.type == SDL_FINGERMOTION) {
        input_->OnTouch({number, TouchPhase::kMove, at.x, at.y});
    } else {
        fingers_.Lift(number);
        input_->OnTouch({number, TouchPhase::kUp, at.x, at.y});
    }
}

void DesktopWindow::HandleMouseButton(const SDL_MouseButtonEvent& event) {
    if (event.button != SDL_BUTTON_LEFT || IsOfTouchScreen(event.which)) return;
    if (event.type == SDL_MOUSEBUTTONDOWN) {
        isMouseDown_ = true;
        SendMouse(TouchPhase::kDown, event.x, event.y);
    } else if (isMouseDown_) {
        isMouseDown_ = false;
        SendMouse(TouchPhase::kUp, event.x, event.y);
    }
}

void DesktopWindow::HandleKey(const SDL_KeyboardEvent& event) {
    const std::string_view code = KeyCodeOf(event.keysym.scancode);
    if (code.empty()) return;
    const KeyPhase phase = event.type == SDL_KEYUP ? KeyPhase::kUp
                           : event.repeat != 0     ? KeyPhase::kRepeat
                                                   : KeyPhase::kDown;
    const ShiftKey shift = (event.keysym.mod & KMOD_SHIFT) != 0 ? ShiftKey::kHeld : ShiftKey::kReleased;
    input_->OnKey({code, phase, shift});
}

void DesktopWindow::SendMouse(TouchPhase phase, int x, int y) {
    mouseAt_ = ToPixels(x, y);
    input_->OnTouch({kMouseFinger, phase, mouseAt_.x, mouseAt_.y});
}

PointF DesktopWindow::ToPixels(int x, int y) const {
    // SDL counts the mouse in the desktop's units, of which each may be several pixels.
    int width = 0;
    int height = 0;
    SDL_GetWindowSize(window_.get(), &width, &height);
    const PixelSize size = Size();
    return {static_cast<double>(x) * size.width / std::max(width, 1),
            static_cast<double>(y) * size.height / std::max(height, 1)};
}

void DesktopWindow::ShowPointer(int x, int y) {
    const PointF place = ToPixels(x, y);
    const Pointer pointer = input_->PointerAt(place.x, place.y);
    if (pointer == pointer_) return;
    pointer_ = pointer;
    if (!hand_) hand_.reset(SDL_CreateSystemCursor(SDL_SYSTEM_CURSOR_HAND));
    SDL_SetCursor(pointer == Pointer::kHand && hand_ ? hand_.get() : SDL_GetDefaultCursor());
}

void DesktopWindow::FlushLostInput() {
    if (!std::exchange(isInputLost_, false)) return;
    fingers_.LiftAll();
    isMouseDown_ = false;
    input_->OnInputLost();
}

void DesktopWindow::SetVisibility(Visibility visibility) {
    if (visibility == visibility_) return;
    visibility_ = visibility;
    if (visibility == Visibility::kHidden) {
        // What was down stays down for the listeners until the window is back: they lift it then.
        isInputLost_ = false;
        fingers_.LiftAll();
        isMouseDown_ = false;
    }
    listener_->OnVisibilityChanged(visibility);
}

void DesktopWindow::TakePixels() {
    shadowSurface_.reset();
    target_ = SDL_GetWindowSurface(window_.get());
    if (target_ == nullptr) {
        pixels_ = painter_.CreateOpaqueSurface({});
        return;
    }
    if (target_->format->format == SDL_PIXELFORMAT_RGB888 && !SDL_MUSTLOCK(target_)) {
        pixels_ =
            painter_.WrapPixels(static_cast<unsigned char*>(target_->pixels), target_->w, target_->h, target_->pitch);
        if (pixels_) return;
    }
    const std::size_t stride = static_cast<std::size_t>(target_->w) * kPixelBytes;
    shadow_.assign(stride * static_cast<std::size_t>(target_->h), 0);
    shadowSurface_.reset(SDL_CreateRGBSurfaceWithFormatFrom(shadow_.data(), target_->w, target_->h, kPixelBits,
                                                            static_cast<int>(stride), SDL_PIXELFORMAT_RGB888));
    pixels_ = painter_.WrapPixels(shadow_.data(), target_->w, target_->h, static_cast<int>(stride));
}

std::optional<WindowPlace> DesktopWindow::Place() const {
    // The frame may have been told since the last event.
    const auto place = PlaceNow();
    return place ? place : place_;
}

void DesktopWindow::NotePlace() {
    if (const auto place = PlaceNow()) place_ = place;
}

std::optional<WindowPlace> DesktopWindow::PlaceNow() const {
    constexpr Uint32 kElsewhere = SDL_WINDOW_FULLSCREEN_DESKTOP | SDL_WINDOW_MAXIMIZED | SDL_WINDOW_MINIMIZED;
    if (!window_ || (SDL_GetWindowFlags(window_.get()) & kElsewhere) != 0) return std::nullopt;
    WindowPlace place;
    SDL_GetWindowPosition(window_.get(), &place.x, &place.y);
    SDL_GetWindowSize(window_.get(), &place.width, &place.height);
    // A window manager puts the frame, not what is in it, where a new window asks to be.
    int top = 0;
    int left = 0;
    if (SDL_GetWindowBordersSize(window_.get(), &top, &left, nullptr, nullptr) == 0) {
        place.x -= left;
        place.y -= top;
    }
    return place;
}

bool DesktopWindow::HasNoFrame() const {
    const char* const driver = SDL_GetCurrentVideoDriver();
    if (driver == nullptr || std::string_view(driver) != "x11") return false;
    if ((SDL_GetWindowFlags(window_.get()) & SDL_WINDOW_MAXIMIZED) != 0) return false;
    int top = 0;
    int left = 0;
    return SDL_GetWindowBordersSize(window_.get(), &top, &left, nullptr, nullptr) == 0 && top == 0 && left == 0;
}

void DesktopWindow::MeasureFrameInterval() {
    SDL_DisplayMode mode{};
    const int display = SDL_GetWindowDisplayIndex(window_.get());
    const bool isKnown = display >= 0 && SDL_GetCurrentDisplayMode(display, &mode) == 0 && mode.refresh_rate > 0;
    frameInterval_ = isKnown ? kMicrosecondsPerSecond / mode.refresh_rate : kUsualFrameInterval;
}

}  // namespace host
