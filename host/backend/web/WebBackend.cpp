// What the web back end supports:
//   clock        performance.now, as fine as the browser gives it
//   loop driver  a step at each input, timeout and message; returns at once
//   window       the page's canvas; touches, keys by position, the phone's Back, the page's visibility
//   painter      Canvas2D with the system's fonts; pictures as canvases
//   speaker      an audio worklet that runs the same mix, at the context's rate
//   microphone   getUserMedia, asked for raw, by a second worklet node
//   storage      one archive of the package, localStorage for the settings, the page's memory for other files
//
// RenderingBackend beside it renders a performance on a virtual clock, in a page or in node: the headless clock, loop
// driver and speaker with this painter and storage, a window of the phone's size, and no microphone.
//
// What the page calls, on its one thread:
//   brevant_touch(finger, kind, x, y)   kind 0 down, 1 move, 2 up, 3 cancel; x and y in the canvas's device pixels
//   brevant_key(code, kind, shift)      a KeyboardEvent's code; kind 0 down, 1 repeat, 2 up; shift 1 while it is held
//   brevant_phone_key(kind)             the phone's Back; kind 0 down, 2 up
//   brevant_input_lost()                every finger and key is lifted
//   brevant_resize(width, height)       the canvas in device pixels
//   brevant_visibility(visible)         0 hidden: the application is in the background, and nothing sounds
//   brevant_unlocked()                  from within the handler of a lifted touch, a click or a key, each time
//   brevant_close()                     the user closes the application
//   brevant_accessible_activate(id)     the mirror's user presses that thing
//   brevant_accessible_set(id, value)   the mirror's user moves that slider
//   brevant_tick()                      the time that loop.mjs was asked for has come
// speaker.mjs and microphone.mjs call brevant_speaker_… and brevant_microphone_… by what bridge.js hands them.

#include "backend/web/WebBackend.h"

#include <emscripten.h>

#include <array>
#include <string_view>

#include "backend/headless/HeadlessLoopDriver.h"
#include "backend/headless/HeadlessSpeaker.h"
#include "backend/headless/SilentMicrophone.h"
#include "backend/headless/VirtualClock.h"
#include "backend/web/Bridge.h"
#include "backend/web/CanvasPainter.h"
#include "backend/web/PortSpeaker.h"
#include "backend/web/WebClock.h"
#include "backend/web/WebLoopDriver.h"
#include "backend/web/WebMicrophone.h"
#include "backend/web/WebStorage.h"
#include "backend/web/WebWindow.h"

namespace host {

namespace {

/// Null while there is none; the page's calls are passed over then.
class WebBackend* current = nullptr;

class WebBackend final : public Backend {
public:
    explicit WebBackend(const BackendOptions& options) : storage(options.packageRoot, options.dataRoot) {
        current = this;
    }
    ~WebBackend() override { current = nullptr; }
    WebBackend(const WebBackend&) = delete;
    WebBackend& operator=(const WebBackend&) = delete;

    [[nodiscard]] BackendParts Parts() override {
        return {clock, loopDriver, window, painter, speaker, microphone, storage};
    }

    WebClock clock;
    WebLoopDriver loopDriver{clock};
    CanvasPainter painter;
    WebWindow window{painter};
    PortSpeaker speaker;
    WebMicrophone microphone;
    WebStorage storage;
};

/// A picture of the phone's own size that nobody touches.
class RenderingWindow final : public Window {
public:
    explicit RenderingWindow(CanvasPainter& painter) : painter_(painter) {}

    [[nodiscard]] bool Open(std::string_view /*title*/, PixelSize screen, WindowListener& /*listener*/,
                            InputListener& /*input*/) override {
        pixels_ = painter_.CreateSurface(screen, 1);
        return true;
    }
    void Close() override {}
    [[nodiscard]] PixelSize Size() const override { return pixels_ ? pixels_->Size() : PixelSize{}; }
    [[nodiscard]] Surface& Pixels() override { return *pixels_; }
    void Present(std::span<const PixelRect> /*damage*/) override {}
    [[nodiscard]] Microseconds FrameInterval() const override { return kFrameInterval; }

private:
    static constexpr Microseconds kFrameInterval = 16'667;  // a sixtieth of a second, as everywhere in headless

    CanvasPainter& painter_;
    std::unique_ptr<Surface> pixels_;
};

class RenderingBackend final : public Backend {
public:
    explicit RenderingBackend(const BackendOptions& options) : storage_(options.packageRoot, options.dataRoot) {}

    [[nodiscard]] BackendParts Parts() override {
        return {clock_, loopDriver_, window_, painter_, speaker_, microphone_, storage_};
    }

private:
    VirtualClock clock_;
    HeadlessSpeaker speaker_{clock_};
    HeadlessLoopDriver loopDriver_{clock_, speaker_};
    CanvasPainter painter_;
    RenderingWindow window_{painter_};
    SilentMicrophone microphone_;
    WebStorage storage_;
};

// Does something with the back end, and then whatever that made due.
template <typename Action>
void Act(Action action) {
    if (current == nullptr) return;
    current->loopDriver.ExpectStep();
    action(*current);
    current->loopDriver.Step();
}

KeyPhase KeyPhaseOf(int kind) {
    constexpr int kUp = 2;
    return kind == 0 ? KeyPhase::kDown : kind == kUp ? KeyPhase::kUp : KeyPhase::kRepeat;
}

}  // namespace

std::unique_ptr<Backend> CreateWebBackend(const BackendOptions& options) {
    return std::make_unique<WebBackend>(options);
}

std::unique_ptr<Backend> CreateRenderingBackend(const BackendOptions& options) {
    return std::make_unique<RenderingBackend>(options);
}

bool IsWebAvailable() {
    return true;
}

std::string WebLibraries() {
    return "Canvas2D, Web Audio";
}

std::string BrowserLanguage(const std::string& known) {
    constexpr std::size_t kRoom = 8;
    std::array<char, kRoom> language{};
    web_window_language(known.c_str(), language.data(), static_cast<int>(language.size()));
    return language.data();
}

PixelSize CanvasSize() {
    return {web_window_width(), web_window_height()};
}

void TellPageOfEnd(int status) {
    web_window_ended(status);
}

void TellPageOfRefusal(const std::string& reason) {
    web_window_refused(reason.c_str());
}

extern "C" {

EMSCRIPTEN_KEEPALIVE void brevant_touch(int finger, int kind, double x, double y) {
    constexpr std::array kPhases{TouchPhase::kDown, TouchPhase::kMove, TouchPhase::kUp, TouchPhase::kCancel};
    if (kind < 0 || static_cast<std::size_t>(kind) >= kPhases.size()) return;
    Act([&](WebBackend& web) { web.window.Touch({finger, kPhases[static_cast<std::size_t>(kind)], x, y}); });
}

EMSCRIPTEN_KEEPALIVE void brevant_key(const char* code, int kind, int shift) {
    Act([&](WebBackend& web) {
        web.window.Key({code, KeyPhaseOf(kind), shift != 0 ? ShiftKey::kHeld : ShiftKey::kReleased});
    });
}

EMSCRIPTEN_KEEPALIVE void brevant_phone_key(int kind) {
    Act([&](WebBackend& web) { web.window.Key({"BrowserBack", KeyPhaseOf(kind), ShiftKey::kReleased}); });
}

EMSCRIPTEN_KEEPALIVE void brevant_input_lost() {
    Act([](WebBackend& web) { web.window.LoseInput(); });
}

EMSCRIPTEN_KEEPALIVE void brevant_resize(int width, int height) {
    Act([&](WebBackend& web) { web.window.Resize({width, height}); });
}

EMSCRIPTEN_KEEPALIVE void brevant_visibility(int visible) {
    Act([&](WebBackend& web) {
        web_speaker_hide(visible != 0 ? 0 : 1);
        web.window.Show(visible != 0 ? Visibility::kVisible : Visibility::kHidden);
    });
}

EMSCRIPTEN_KEEPALIVE void brevant_unlocked() {
    // First of all: some browsers resume sound only where nothing has come between it and the touch.
    web_speaker_unlock();
    Act([](WebBackend& web) { web.microphone.Unlock(); });
}

EMSCRIPTEN_KEEPALIVE void brevant_close() {
    Act([](WebBackend& web) { web.window.RequestClose(); });
}

EMSCRIPTEN_KEEPALIVE void brevant_accessible_activate(double id) {
    Act([&](WebBackend& web) { web.window.Activate(static_cast<std::uint64_t>(id)); });
}

EMSCRIPTEN_KEEPALIVE void brevant_accessible_set(double id, int value) {
    Act([&](WebBackend& web) { web.window.SetValue(static_cast<std::uint64_t>(id), value); });
}

EMSCRIPTEN_KEEPALIVE void brevant_tick() {
    Act([](WebBackend& /*web*/) {});
}

EMSCRIPTEN_KEEPALIVE void brevant_speaker_news(int kind, std::uint32_t voice, std::uint32_t clip,
                                               std::uint32_t number) {
    if (current != nullptr) current->speaker.AddNews({static_cast<MixNews::Kind>(kind), voice, clip, number});
}

EMSCRIPTEN_KEEPALIVE void brevant_speaker_told() {
    Act([](WebBackend& web) { web.speaker.TellNews(); });
}

EMSCRIPTEN_KEEPALIVE void brevant_speaker_lost(int isLost) {
    Act([&](WebBackend& web) { web.speaker.SetLost(isLost != 0); });
}

EMSCRIPTEN_KEEPALIVE float* brevant_speaker_buffer() {
    return current == nullptr ? nullptr : current->speaker.PlayedBuffer().data();
}

EMSCRIPTEN_KEEPALIVE int brevant_speaker_room() {
    return current == nullptr ? 0 : static_cast<int>(current->speaker.PlayedBuffer().size());
}

EMSCRIPTEN_KEEPALIVE void brevant_speaker_played(int count) {
    if (current != nullptr) current->speaker.TellPlayed(static_cast<std::size_t>(count));
}

EMSCRIPTEN_KEEPALIVE void brevant_microphone_opened(int rate) {
    Act([&](WebBackend& web) { web.microphone.Open(rate); });
}

EMSCRIPTEN_KEEPALIVE void brevant_microphone_lost() {
    Act([](WebBackend& web) { web.microphone.Lose(); });
}

EMSCRIPTEN_KEEPALIVE float* brevant_microphone_buffer() {
    return current == nullptr ? nullptr : current->microphone.Buffer().data();
}

EMSCRIPTEN_KEEPALIVE int brevant_microphone_room() {
    return current == nullptr ? 0 : static_cast<int>(current->microphone.Buffer().size());
}

EMSCRIPTEN_KEEPALIVE void brevant_microphone_heard(int count) {
    Act([&](WebBackend& web) { web.microphone.Hear(static_cast<std::size_t>(count)); });
}

}  // extern "C"

}  // namespace host
