#include "runtime/screen/controls/ActionNode.h"

namespace host {

void ActionNode::OnFinger(const FingerEvent& event) {
    const SizeF size = Size();
    const bool isInside = RectF{0, 0, size.width, size.height}.Contains(event.position);
    const bool isDown = event.phase == FingerEvent::Phase::kPress || event.phase == FingerEvent::Phase::kMove;
    SetPressed(isFingerInside_, isDown && isInside);

    const std::weak_ptr<Node> token = Token();
    Node::OnFinger(event);
    if (token.expired()) return;
    if (event.phase == FingerEvent::Phase::kRelease && isInside) ActAndTell();
}

bool ActionNode::OnFocusKey(const FocusKeyEvent& event) {
    if (event.key != FocusKey::kActivate) return false;
    if (event.stroke == KeyStroke::kFirst) SetPressed(isKeyDown_, true);
    return true;
}

void ActionNode::OnActivateKeyEnded(KeyEnd end) {
    if (!isKeyDown_) return;
    SetPressed(isKeyDown_, false);
    if (end == KeyEnd::kLifted) ActAndTell();
}

void ActionNode::SetPressed(bool& part, bool isPressed) {
    if (part == isPressed) return;
    part = isPressed;
    LookChanged();
}

void ActionNode::ActAndTell() {
    Act();
    if (Delegate() != nullptr) Delegate()->OnAction();
}

}  // namespace host
