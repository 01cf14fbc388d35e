#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "backend/Painter.h"
#include "backend/Window.h"
#include "runtime/loop/EventLoop.h"
#include "runtime/package/Package.h"
#include "runtime/screen/Node.h"
#include "runtime/screen/input/Fingers.h"
#include "runtime/screen/input/InputWatcher.h"
#include "runtime/screen/input/PhoneKeyListener.h"
#include "runtime/trace/Trace.h"

namespace host {

class Compositor;
class Keyboard;
class ScreenStack;

/// The phone's screen in the window: who is touched, which keys go where, what is painted. The phone's pixels are
/// scaled uniformly and centred in the window; what is left over is black. UI thread only.
class Screen final : public InputListener, public NodeHost {
public:
    /// Everything must outlive the screen. The window may be opened later, and OnResized be called then.
    Screen(EventLoop& loop, const Clock& clock, Painter& painter, Window& window, Trace& trace, const Package& package,
           PhoneKeyListener& keyListener, PixelSize phoneScreen);
    ~Screen();
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    // InputListener: from the window, in its device pixels.
    void OnTouch(const TouchInput& touch) override;
    void OnKey(const KeyInput& key) override;
    /// Lifts every finger and every key.
    void OnInputLost() override;
    void OnResized() override;
    void OnExposed() override;
    [[nodiscard]] Pointer PointerAt(double x, double y) const override;

    /// Nothing is composed while the window is hidden.
    void SetVisibility(Visibility visibility);
    /// The application is in the background: what is down stays down, and nothing is delivered of fingers and keys.
    void SuspendInput();
    /// It is in the foreground again: first everything that was down is lifted.
    void ResumeInput();

    // From the window and from a performance. Passed over while input is suspended.
    /// A finger's news in the phone's pixels. A lift without a place is where the finger last was.
    void Touch(const FingerId& finger, TouchPhase phase, std::optional<PointF> place);
    /// A code that nothing is bound to is passed over.
    void PressKey(std::string_view code, ShiftKey shift);
    void LiftKey(std::string_view code);
    /// As a key of that kind. A Back that is lifted without a press goes to the topmost screen.
    void PressPhoneKey(PhoneKey key);
    void LiftPhoneKey(PhoneKey key);
    /// The visible control of that name on the topmost screen; null when there is none.
    [[nodiscard]] Node* FindOnTop(std::string_view name);
    /// Has every change reported that is still in progress (a drag).
    void FlushReports();

    /// Composes what is marked, at most once a display frame and at once when nothing was composed for longer than
    /// that. Returns when it wants to be called again, or LoopClient::kNever.
    Microseconds ComposeIfDue(Microseconds now);
    /// What the screen shows now, with all that is marked.
    [[nodiscard]] Image ReadNow();
    [[nodiscard]] Compositor& GetCompositor() { return *compositor_; }

    // For the framework's controls.
    /// The form that is shown under the popups, or null. Fingers on the one before are taken as lifted.
    void SetCurrentForm(Node* form);
    /// Puts a popup on top of everything; one that is shown already comes to the top.
    void ShowPopup(Node& popup);
    /// A node that lies over everything and gets neither touches nor keys; null for none. Not owned.
    void SetOverlay(Node* overlay);
    /// Called whenever a finger or a key is pressed, before it acts. Empty for none.
    void SetUseHandler(std::function<void()> onUse) { onUse_ = std::move(onUse); }
    /// What the host itself does with a key; false when the key is none of its own.
    using HostKeyHandler = std::function<bool(std::string_view code, KeyPhase phase)>;
    /// Asked before anything else hears of a press or a lift. Empty for none.
    void SetHostKeyHandler(HostKeyHandler onHostKey) { onHostKey_ = std::move(onHostKey); }
    /// Null for none. It must outlive the screen, or be taken back.
    void SetInputWatcher(InputWatcher* watcher) noexcept { inputWatcher_ = watcher; }
    /// The topmost screen; null when there is none.
    [[nodiscard]] Node* Topmost();
    /// Whether it is one of the popups that are shown.
    [[nodiscard]] bool IsPopup(const Node& node) const;
    [[nodiscard]] bool IsInputSuspended() const { return isInputSuspended_; }
    /// Whether keys play on the topmost screen.
    [[nodiscard]] bool IsPlayedOn() const;
    [[nodiscard]] EventLoop& GetLoop() { return loop_; }
    [[nodiscard]] Painter& GetPainter() { return painter_; }
    [[nodiscard]] const Package& GetPackage() const { return package_; }
    [[nodiscard]] PixelSize GetPhoneScreen() const { return phoneScreen_; }

    // NodeHost
    [[nodiscard]] LookListener& GetLookListener() override;
    void OnNodeShownOrHidden(const Node& node) override;
    void OnNodeGone(const Node& node) override;
    void OnReportWanted(const Node& node) override;

private:
    void TellOfUse();
    void LiftAll();
    void OnTopmostChanged();
    void Compose(Microseconds now);
    /// Has all changes reported but that of `goesOn`, which is null for none.
    void FlushReportsBut(const Node* goesOn);

    EventLoop& loop_;
    Painter& painter_;
    const Package& package_;
    PixelSize phoneScreen_;
    std::unique_ptr<ScreenStack> stack_;
    std::unique_ptr<Fingers> fingers_;
    std::unique_ptr<Compositor> compositor_;
    std::unique_ptr<Keyboard> keyboard_;
    std::vector<std::weak_ptr<Node>> reporting_;  ///< want their reports flushed
    std::function<void()> onUse_;
    HostKeyHandler onHostKey_;
    InputWatcher* inputWatcher_ = nullptr;
    bool isInputSuspended_ = false;
};

}  // namespace host
