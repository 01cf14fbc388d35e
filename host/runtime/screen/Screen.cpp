#include "runtime/screen/Screen.h"

#include <algorithm>
#include <utility>

#include "backend/LoopDriver.h"
#include "runtime/screen/ScreenStack.h"
#include "runtime/screen/composing/Compositor.h"
#include "runtime/screen/input/Keyboard.h"

namespace host {

Screen::Screen(EventLoop& loop, const Clock& clock, Painter& painter, Window& window, Trace& trace,
               const Package& package, PhoneKeyListener& keyListener, PixelSize phoneScreen)
    : loop_(loop),
      painter_(painter),
      package_(package),
      phoneScreen_(phoneScreen),
      stack_(std::make_unique<ScreenStack>()),
      fingers_(std::make_unique<Fingers>(*stack_)),
      compositor_(std::make_unique<Compositor>(clock, painter, window, trace, *stack_, phoneScreen)),
      keyboard_(std::make_unique<Keyboard>(package.Keys(), *stack_, *fingers_, *compositor_, keyListener)) {}

Screen::~Screen() = default;

void Screen::OnTouch(const TouchInput& touch) {
    loop_.BeginInput();
    Touch({FingerSource::kWindow, touch.finger}, touch.phase, compositor_->ToPhone(touch.x, touch.y));
}

void Screen::Touch(const FingerId& finger, TouchPhase phase, std::optional<PointF> place) {
    if (isInputSuspended_) return;
    if (inputWatcher_ != nullptr) inputWatcher_->OnFingerUsed(finger, phase, place);
    // The finger that goes on with a drag is what its report waits for; any other may act on what was dragged.
    FlushReportsBut(fingers_->NodeOf(finger));
    switch (phase) {
        case TouchPhase::kDown:
            TellOfUse();
            keyboard_->OnTouch();
            fingers_->Press(finger, place.value_or(PointF{}));
            break;
        case TouchPhase::kMove:
            fingers_->Move(finger, place.value_or(PointF{}));
            break;
        case TouchPhase::kUp:
            if (place) {
                fingers_->Lift(finger, *place);
            } else {
                fingers_->Lift(finger);
            }
            break;
        case TouchPhase::kCancel:
            fingers_->Cancel(finger);
            break;
    }
}

void Screen::TellOfUse() {
    if (onUse_) onUse_();
}

void Screen::OnKey(const KeyInput& key) {
    loop_.BeginInput();
    switch (key.phase) {
        case KeyPhase::kDown:
            PressKey(key.code, key.shift);
            break;
        case KeyPhase::kRepeat:
            if (isInputSuspended_) return;
            FlushReports();
            keyboard_->Repeat(key.code, key.shift);
            break;
        case KeyPhase::kUp:
            LiftKey(key.code);
            break;
    }
}

void Screen::PressKey(std::string_view code, ShiftKey shift) {
    if (isInputSuspended_ || (onHostKey_ && onHostKey_(code, KeyPhase::kDown))) return;
    if (inputWatcher_ != nullptr) inputWatcher_->OnKeyUsed(code, KeyPhase::kDown);
    FlushReports();
    TellOfUse();
    keyboard_->Press(code, shift);
}

void Screen::LiftKey(std::string_view code) {
    if (isInputSuspended_ || (onHostKey_ && onHostKey_(code, KeyPhase::kUp))) return;
    if (inputWatcher_ != nullptr) inputWatcher_->OnKeyUsed(code, KeyPhase::kUp);
    FlushReports();
    keyboard_->Lift(code);
}

void Screen::PressPhoneKey(PhoneKey key) {
    if (isInputSuspended_) return;
    if (inputWatcher_ != nullptr) inputWatcher_->OnPhoneKeyUsed(key, KeyPhase::kDown);
    FlushReports();
    TellOfUse();
    keyboard_->PressPhoneKey(key);
}

void Screen::LiftPhoneKey(PhoneKey key) {
    if (isInputSuspended_) return;
    if (inputWatcher_ != nullptr) inputWatcher_->OnPhoneKeyUsed(key, KeyPhase::kUp);
    FlushReports();
    keyboard_->LiftPhoneKey(key);
}

void Screen::OnInputLost() {
    loop_.BeginInput();
    if (!isInputSuspended_) LiftAll();
}

void Screen::SuspendInput() {
    isInputSuspended_ = true;
}

void Screen::ResumeInput() {
    if (std::exchange(isInputSuspended_, false)) LiftAll();
}

void Screen::LiftAll() {
    if (inputWatcher_ != nullptr) inputWatcher_->OnAllLifted();
    fingers_->CancelAll();
    keyboard_->CancelAll();
}

void Screen::OnResized() {
    compositor_->OnResized();
}

void Screen::OnExposed() {
    compositor_->DamageAll();
}

Pointer Screen::PointerAt(double x, double y) const {
    const Node* node = fingers_->NodeAt(compositor_->ToPhone(x, y));
    // Holes take several fingers, everything else that can be pressed takes the focus.
    return node != nullptr && (node->IsFocusable() || node->IsMultipoint()) ? Pointer::kHand : Pointer::kArrow;
}

void Screen::SetVisibility(Visibility visibility) {
    compositor_->SetVisible(visibility == Visibility::kVisible);
}

Node* Screen::FindOnTop(std::string_view name) {
    return stack_->FindOnTop(name);
}

Microseconds Screen::ComposeIfDue(Microseconds now) {
    if (compositor_->IsDue(now)) Compose(now);
    return compositor_->NextDue();
}

void Screen::Compose(Microseconds now) {
    // Listeners that redraw themselves on a report do so within the frame that shows what was reported.
    FlushReports();
    compositor_->Compose(now);
}

Image Screen::ReadNow() {
    if (compositor_->IsWanted()) Compose(loop_.Now());
    return compositor_->ReadScreen();
}

void Screen::SetCurrentForm(Node* form) {
    if (form == stack_->Form()) return;
    stack_->SetForm(form);
    OnTopmostChanged();
}

void Screen::ShowPopup(Node& popup) {
    stack_->Push(popup);
    OnTopmostChanged();
}

void Screen::SetOverlay(Node* overlay) {
    stack_->SetOverlay(overlay);
    compositor_->DamageAll();
}

Node* Screen::Topmost() {
    return stack_->Topmost();
}

bool Screen::IsPopup(const Node& node) const {
    return stack_->ScreenOf(node) == &node && stack_->Form() != &node;
}

bool Screen::IsPlayedOn() const {
    return keyboard_->IsTopmostPlayedOn();
}

void Screen::OnTopmostChanged() {
    compositor_->DamageAll();
    keyboard_->OnTopmostChanged();
    fingers_->CancelOutside(stack_->Topmost());
}

LookListener& Screen::GetLookListener() {
    return *compositor_;
}

void Screen::OnNodeShownOrHidden(const Node& node) {
    const bool isScreen = stack_->ScreenOf(node) == &node;
    if (!node.IsVisible()) {
        fingers_->CancelWithin(node);
        keyboard_->OnNodeHidden(node);
    }
    if (isScreen) OnTopmostChanged();
}

void Screen::OnNodeGone(const Node& node) {
    fingers_->Forget(node);
    keyboard_->OnNodeGone(node);
    compositor_->Forget(node);
    if (stack_->Forget(node)) OnTopmostChanged();
}

void Screen::OnReportWanted(const Node& node) {
    const auto isIt = [&node](const std::weak_ptr<Node>& waiting) { return waiting.lock().get() == &node; };
    if (std::none_of(reporting_.begin(), reporting_.end(), isIt)) reporting_.push_back(node.Token());
    compositor_->WantFrame();
}

void Screen::FlushReports() {
    FlushReportsBut(nullptr);
}

void Screen::FlushReportsBut(const Node* goesOn) {
    // A listener that is told may cause further reports; those wait for the next time.
    for (const std::weak_ptr<Node>& waiting : std::exchange(reporting_, {})) {
        const auto node = waiting.lock();
        if (node == nullptr) continue;
        if (node.get() == goesOn) {
            reporting_.push_back(waiting);
        } else {
            node->FlushReports();
        }
    }
}

}  // namespace host
