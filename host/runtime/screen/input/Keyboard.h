#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "backend/Window.h"
#include "runtime/package/KeyBinding.h"
#include "runtime/screen/Node.h"
#include "runtime/screen/ScreenStack.h"
#include "runtime/screen/composing/Compositor.h"
#include "runtime/screen/input/Fingers.h"
#include "runtime/screen/input/PhoneKeyListener.h"

namespace host {

/// The keys: those of the phone, those that keys.xml binds, and those that move and use the focus ring. A key's
/// release goes to whatever its press acted on, or nowhere; Back alone goes to the topmost screen. UI thread only.
class Keyboard {
public:
    Keyboard(const std::vector<KeyBinding>& bindings, ScreenStack& stack, Fingers& fingers, Compositor& compositor,
             PhoneKeyListener& listener);

    void Press(std::string_view code, ShiftKey shift);
    void Repeat(std::string_view code, ShiftKey shift);
    void Lift(std::string_view code);
    /// As a key of that kind. A Back that is lifted without a press goes to the topmost screen.
    void PressPhoneKey(PhoneKey key);
    void LiftPhoneKey(PhoneKey key);
    /// Every key is lifted, and none of them acts.
    void CancelAll();

    /// A finger is used: the ring goes until the next key that moves it.
    void OnTouch();
    /// Another screen is the topmost one. With a keyboard in use its ring goes around what had it, or the first
    /// control.
    void OnTopmostChanged();
    /// Whether the topmost screen shows a control that keys hold fingers on.
    [[nodiscard]] bool IsTopmostPlayedOn() const;
    void OnNodeHidden(const Node& node);
    void OnNodeGone(const Node& node);

private:
    struct HeldFinger {
        FingerId finger;
    };
    struct HeldBreath {
        double level;
    };
    struct HeldBack {};
    struct HeldForFocus {
        std::weak_ptr<Node> node;
    };
    using Held = std::variant<std::monostate, HeldFinger, HeldBreath, HeldBack, HeldForFocus>;

    [[nodiscard]] Held Begin(std::string_view code, ShiftKey shift);
    [[nodiscard]] Held Begin(const TouchBinding& binding);
    [[nodiscard]] Held Begin(const BreathBinding& binding);
    [[nodiscard]] Held Begin(PhoneKey key);
    void End(const Held& held, KeyEnd how);
    template <typename Predicate>
    void CancelForFocus(Predicate predicate);
    /// False when the focused node has no use for the key.
    bool TellFocused(std::string_view code, ShiftKey shift, KeyStroke stroke);
    void TellBreath();

    void MoveFocus(ShiftKey shift);
    void SetFocus(Node* node);
    void ShowRing();
    [[nodiscard]] Node* Focused() const { return focused_.lock().get(); }
    [[nodiscard]] static std::vector<Node*> FocusOrder(Node& screen);

    const std::vector<KeyBinding>& bindings_;
    ScreenStack& stack_;
    Fingers& fingers_;
    Compositor& compositor_;
    PhoneKeyListener& listener_;

    std::map<std::string, Held, std::less<>> held_;
    std::int64_t lastFinger_ = 0;
    double toldBreath_ = 0;

    bool isInUse_ = false;            ///< rather than fingers
    bool isRingMovedByUser_ = false;  ///< on the topmost screen; otherwise the ring came there by itself
    std::weak_ptr<Node> focused_;
    std::weak_ptr<Node> ringed_;                              ///< the focused one while its ring shows
    std::map<const Node*, std::weak_ptr<Node>> lastFocused_;  ///< by screen, for when it is the topmost one again
};

}  // namespace host
