#include "runtime/screen/Screen.h"

#include <utility>

#include "backend/LoopDriver.h"
#include "runtime/screen/ScreenStack.h"
#include "runtime/screen/composing/Compositor.h"
#include "runtime/screen/controls/ColorPickerNode.h"
#include "runtime/screen/input/Fingers.h"
#include "runtime/screen/input/Keyboard.h"

namespace host {

namespace {

std::optional<PhoneKey> PhoneKeyOf(std::string_view name) {
    if (name == "back") return PhoneKey::kBack;
    if (name == "volume-up") return PhoneKey::kVolumeUp;
    if (name == "volume-down") return PhoneKey::kVolumeDown;
    return std::nullopt;
}

}  // namespace

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
    if (isInputSuspended_) return;
    const FingerId finger{FingerSource::kWindow, touch.finger};
    const PointF place = compositor_->ToPhone(touch.x, touch.y);
    FlushReportsBefore(finger);
    switch (touch.phase) {
        case TouchPhase::kDown:
            PressFinger(finger, place);
            break;
        case TouchPhase::kMove:
            fingers_->Move(finger, place);
            break;
        case TouchPhase::kUp:
            fingers_->Lift(finger, place);
            break;
        case TouchPhase::kCancel:
            fingers_->Cancel(finger);
            break;
    }
}

void Screen::Touch(std::int64_t number, TouchPhase phase, PointF position) {
    if (isInputSuspended_) return;
    const FingerId finger{FingerSource::kPerformance, number};
    FlushReportsBefore(finger);
    switch (phase) {
        case TouchPhase::kDown:
            PressFinger(finger, position);
            break;
        case TouchPhase::kMove:
            fingers_->Move(finger, position);
            break;
        case TouchPhase::kUp:
            fingers_->Lift(finger);
            break;
        case TouchPhase::kCancel:
            fingers_->Cancel(finger);
            break;
    }
}

void Screen::PressFinger(const FingerId& finger, PointF place) {
    TellOfUse();
    keyboard_->OnTouch();
    fingers_->Press(finger, place);
}

void Screen::TellOfUse() {
    if (onUse_) onUse_();
}

void Screen::OnKey(const KeyInput& key) {
    loop_.BeginInput();
    if (isInputSuspended_) return;
    FlushReports();
    switch (key.phase) {
        case KeyPhase::kDown:
            TellOfUse();
            keyboard_->Press(key.code, key.shift);
            break;
        case KeyPhase::kRepeat:
            keyboard_->Repeat(key.code, key.shift);
            break;
        case KeyPhase::kUp:
            keyboard_->Lift(key.code);
            break;
    }
}

void Screen::PressKey(std::string_view key) {
    if (isInputSuspended_) return;
    FlushReports();
    TellOfUse();
    if (const auto phoneKey = PhoneKeyOf(key)) {
        keyboard_->PressPhoneKey(*phoneKey);
    } else {
        keyboard_->Press(key, ShiftKey::kReleased);
    }
}

void Screen::ReleaseKey(std::string_view key) {
    if (isInputSuspended_) return;
    FlushReports();
    if (const auto phoneKey = PhoneKeyOf(key)) {
        keyboard_->LiftPhoneKey(*phoneKey);
    } else {
        keyboard_->Lift(key);
    }
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

std::optional<PointF> Screen::PointOn(std::string_view name, double fractionX, double fractionY) const {
    return stack_->PointOn(name, {fractionX, fractionY});
}

bool Screen::PickColor(std::string_view name, Rgba color) {
    FlushReports();
    Node* topmost = stack_->Topmost();
    auto* picker = topmost == nullptr ? nullptr : dynamic_cast<ColorPickerNode*>(topmost->FindVisible(name));
    if (picker == nullptr) return false;
    picker->Pick(color);
    return true;
}

bool Screen::SavePicture(const std::string& path) {
    if (compositor_->IsWanted()) Compose(loop_.Now());
    return compositor_->SavePicture(path);
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

std::uint64_t Screen::FramesComposed() const {
    return compositor_->FramesComposed();
}

void Screen::RepaintAll() {
    compositor_->RepaintAll();
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

bool Screen::IsPlayedOn() const {
    return keyboard_->IsTopmostPlayedOn();
}

void Screen::OnTopmostChanged() {
    compositor_->DamageAll();
    keyboard_->OnTopmostChanged();
    fingers_->CancelOutside(stack_->Topmost());
}

void Screen::OnNodeMarked(const Node& node) {
    compositor_->Mark(node);
}

void Screen::OnNodeDrawn(const Node& node, DrawOperation operation) {
    compositor_->Record(node, std::move(operation));
}

void Screen::OnNodeDamaged(const Node& node) {
    compositor_->AddDamage(node);
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
    // One node at a time is changed by the user; a second one only waits until the first has told.
    const auto before = reporting_.lock();
    if (before && before.get() != &node) FlushReports();
    reporting_ = node.Token();
    compositor_->WantFrame();
}

void Screen::FlushReportsBefore(const FingerId& finger) {
    // The finger that goes on with a drag is what the report waits for; any other may act on what was dragged.
    const auto node = reporting_.lock();
    if (node && node.get() != fingers_->NodeOf(finger)) FlushReports();
}

void Screen::FlushReports() {
    const auto node = std::exchange(reporting_, {}).lock();
    if (node) node->FlushReports();
}

}  // namespace host
