#include "runtime/screen/input/Keyboard.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <type_traits>
#include <utility>

namespace host {

namespace {

// What codes are to the focused control; digits are found by their names.
struct FocusCode {
    std::string_view code;
    FocusKey key;
};
constexpr std::array<FocusCode, 8> kFocusCodes{{{"Enter", FocusKey::kActivate},
                                                {"NumpadEnter", FocusKey::kActivate},
                                                {"Space", FocusKey::kActivate},
                                                {"ArrowLeft", FocusKey::kLeft},
                                                {"ArrowRight", FocusKey::kRight},
                                                {"ArrowUp", FocusKey::kUp},
                                                {"ArrowDown", FocusKey::kDown},
                                                {"Backspace", FocusKey::kErase}}};
constexpr int kTen = 10;

std::optional<int> HexDigitOf(std::string_view code) {
    const char last = code.empty() ? '\0' : code.back();
    const auto named = [&code](std::string_view prefix) {
        return code.size() == prefix.size() + 1 && code.substr(0, prefix.size()) == prefix;
    };
    if ((named("Digit") || named("Numpad")) && last >= '0' && last <= '9') return last - '0';
    if (named("Key") && last >= 'A' && last <= 'F') return last - 'A' + kTen;
    return std::nullopt;
}

bool IsEnter(std::string_view code) {
    return code == "Enter" || code == "NumpadEnter";
}

}  // namespace

Keyboard::Keyboard(const std::vector<KeyBinding>& bindings, ScreenStack& stack, Fingers& fingers,
                   Compositor& compositor, PhoneKeyListener& listener)
    : bindings_(bindings), stack_(stack), fingers_(fingers), compositor_(compositor), listener_(listener) {}

void Keyboard::Press(std::string_view code, ShiftKey shift) {
    const auto [held, isNew] = held_.try_emplace(std::string(code));
    if (!isNew) return;
    Held begun = Begin(code, shift);
    // What was begun may have ended everything already.
    const auto still = held_.find(code);
    if (still != held_.end()) still->second = std::move(begun);
    TellBreath();
}

void Keyboard::Repeat(std::string_view code, ShiftKey shift) {
    const auto held = held_.find(code);
    const auto* pressed = held == held_.end() ? nullptr : std::get_if<HeldForFocus>(&held->second);
    // Only the focused control wants repeats; if the focus has moved since the press, the repeat is dropped.
    if (pressed != nullptr && pressed->node.lock() == focused_.lock())
        static_cast<void>(TellFocused(code, shift, KeyStroke::kRepeated));
}

void Keyboard::Lift(std::string_view code) {
    const auto found = held_.find(code);
    if (found == held_.end()) return;
    const Held held = std::move(found->second);
    held_.erase(found);
    End(held, KeyEnd::kLifted);
    TellBreath();
}

void Keyboard::PressPhoneKey(PhoneKey key) {
    const auto [held, isNew] = held_.try_emplace(std::string(NameOf(key)));
    if (!isNew) return;
    Held begun = Begin(key);
    const auto still = held_.find(NameOf(key));
    if (still != held_.end()) still->second = std::move(begun);
}

void Keyboard::LiftPhoneKey(PhoneKey key) {
    if (held_.find(NameOf(key)) != held_.end()) {
        Lift(NameOf(key));
    } else if (key == PhoneKey::kBack) {
        End(HeldBack{}, KeyEnd::kLifted);
    }
}

void Keyboard::CancelAll() {
    const auto held = std::move(held_);
    held_.clear();
    for (const auto& [code, what] : held) End(what, KeyEnd::kCancelled);
    TellBreath();
}

Keyboard::Held Keyboard::Begin(std::string_view code, ShiftKey shift) {
    const auto binding = std::find_if(bindings_.begin(), bindings_.end(),
                                      [code](const KeyBinding& candidate) { return candidate.code == code; });
    const bool isBound = binding != bindings_.end();
    const bool isForPlaying = isBound && !std::holds_alternative<PhoneKey>(binding->effect) && IsTopmostPlayedOn();
    // Where keys play, they play whatever has the focus. Enter alone presses there too, on a ring that the user moved.
    const bool isForFocus = !isForPlaying || (isRingMovedByUser_ && IsEnter(code));
    const std::weak_ptr<Node> focused = focused_;
    if (isForFocus && TellFocused(code, shift, KeyStroke::kFirst)) return HeldForFocus{focused};
    if (isBound) return std::visit([this](const auto& effect) { return Begin(effect); }, binding->effect);
    if (code == "Tab") MoveFocus(shift);
    return {};
}

Keyboard::Held Keyboard::Begin(const TouchBinding& binding) {
    const Node* control = stack_.FindOnTop(binding.control);
    if (control == nullptr) return {};
    const PointF place = control->ScreenPointAt(binding.fraction);
    OnTouch();
    const FingerId finger{FingerSource::kKeyboard, ++lastFinger_};
    fingers_.Press(finger, place);
    return HeldFinger{finger};
}

Keyboard::Held Keyboard::Begin(const BreathBinding& binding) {
    return HeldBreath{binding.level};
}

Keyboard::Held Keyboard::Begin(PhoneKey key) {
    switch (key) {
        case PhoneKey::kVolumeUp:
            listener_.OnVolumeKey(1);
            return {};
        case PhoneKey::kVolumeDown:
            listener_.OnVolumeKey(-1);
            return {};
        case PhoneKey::kBack:
            break;
    }
    if (Node* topmost = stack_.Topmost()) topmost->OnBackKey(BackKeyPhase::kPress);
    return HeldBack{};
}

void Keyboard::End(const Held& held, KeyEnd how) {
    if (const auto* finger = std::get_if<HeldFinger>(&held)) {
        how == KeyEnd::kLifted ? fingers_.Lift(finger->finger) : fingers_.Cancel(finger->finger);
    } else if (std::holds_alternative<HeldBack>(held)) {
        Node* topmost = stack_.Topmost();
        if (how == KeyEnd::kLifted && topmost != nullptr) topmost->OnBackKey(BackKeyPhase::kRelease);
    } else if (const auto* activation = std::get_if<HeldForFocus>(&held)) {
        if (const auto node = activation->node.lock()) node->OnActivateKeyEnded(how);
    }
}

bool Keyboard::TellFocused(std::string_view code, ShiftKey shift, KeyStroke stroke) {
    Node* focused = isInUse_ ? Focused() : nullptr;
    if (focused == nullptr) return false;
    FocusKeyEvent event;
    event.stroke = stroke;
    event.shift = shift;
    const auto named = std::find_if(kFocusCodes.begin(), kFocusCodes.end(),
                                    [code](const FocusCode& candidate) { return candidate.code == code; });
    if (named != kFocusCodes.end()) {
        event.key = named->key;
    } else if (const auto digit = HexDigitOf(code)) {
        event.key = FocusKey::kDigit;
        event.digit = *digit;
    } else {
        return false;
    }
    return focused->OnFocusKey(event);
}

bool Keyboard::IsTopmostPlayedOn() const {
    Node* topmost = stack_.Topmost();
    return topmost != nullptr && std::any_of(bindings_.begin(), bindings_.end(), [topmost](const KeyBinding& binding) {
               const auto* touch = std::get_if<TouchBinding>(&binding.effect);
               return touch != nullptr && topmost->FindVisible(touch->control) != nullptr;
           });
}

void Keyboard::TellBreath() {
    double level = 0;
    for (const auto& [code, held] : held_) {
        if (const auto* breath = std::get_if<HeldBreath>(&held)) level = std::max(level, breath->level);
    }
    if (level == toldBreath_) return;
    toldBreath_ = level;
    listener_.OnKeyBreath(level);
}

void Keyboard::OnTouch() {
    isInUse_ = false;
    ShowRing();
}

void Keyboard::OnTopmostChanged() {
    Node* topmost = stack_.Topmost();
    CancelForFocus([topmost](const Node& node) { return topmost == nullptr || !node.IsWithin(*topmost); });
    Node* next = nullptr;
    if (topmost != nullptr) {
        const auto order = FocusOrder(*topmost);
        const auto last = lastFocused_.find(topmost);
        if (last != lastFocused_.end()) next = last->second.lock().get();
        if (std::find(order.begin(), order.end(), next) == order.end()) {
            next = isInUse_ && !order.empty() ? order.front() : nullptr;
        }
    }
    isRingMovedByUser_ = false;
    SetFocus(next);
}

void Keyboard::OnNodeHidden(const Node& node) {
    CancelForFocus([&node](const Node& candidate) { return candidate.IsWithin(node); });
    const Node* focused = Focused();
    if (focused != nullptr && focused->IsWithin(node)) SetFocus(nullptr);
}

void Keyboard::OnNodeGone(const Node& node) {
    lastFocused_.erase(&node);
    if (compositor_.Focus() == &node) compositor_.SetFocus(nullptr);
}

template <typename Predicate>
void Keyboard::CancelForFocus(Predicate predicate) {
    for (auto& [code, held] : held_) {
        const auto* activation = std::get_if<HeldForFocus>(&held);
        if (activation == nullptr) continue;
        const auto node = activation->node.lock();
        if (!node || !predicate(*node)) continue;
        held = {};
        node->OnActivateKeyEnded(KeyEnd::kCancelled);
    }
}

void Keyboard::MoveFocus(ShiftKey shift) {
    Node* topmost = stack_.Topmost();
    if (topmost == nullptr) return;
    const auto order = FocusOrder(*topmost);
    if (order.empty()) return;
    const auto present = std::find(order.begin(), order.end(), Focused());
    const auto size = static_cast<std::ptrdiff_t>(order.size());
    const std::ptrdiff_t step = shift == ShiftKey::kHeld ? -1 : 1;
    std::ptrdiff_t next = step > 0 ? 0 : size - 1;
    if (present != order.end()) {
        // The first key after a touch only shows where the ring was.
        next = present - order.begin() + (isInUse_ ? step : 0);
    }
    isInUse_ = true;
    isRingMovedByUser_ = true;
    SetFocus(order[static_cast<std::size_t>((next + size) % size)]);
}

void Keyboard::SetFocus(Node* node) {
    focused_ = node == nullptr ? std::weak_ptr<Node>() : node->Token();
    if (node != nullptr && stack_.Topmost() != nullptr) lastFocused_[stack_.Topmost()] = focused_;
    ShowRing();
}

void Keyboard::ShowRing() {
    const auto next = isInUse_ ? focused_.lock() : nullptr;
    compositor_.SetFocus(next.get());
    const auto before = ringed_.lock();
    if (before == next) return;
    ringed_ = next;
    if (before) before->OnFocusChanged(FocusState::kLost);
    if (next) next->OnFocusChanged(FocusState::kGained);
}

std::vector<Node*> Keyboard::FocusOrder(Node& screen) {
    std::vector<Node*> order;
    const auto collect = [&order](const auto& self, Node& node) -> void {
        if (!node.IsVisible()) return;
        if (node.IsFocusable()) order.push_back(&node);
        for (Node* child : node.Children()) self(self, *child);
    };
    collect(collect, screen);
    return order;
}

}  // namespace host
