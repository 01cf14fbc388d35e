#pragma once

#include "runtime/screen/Node.h"

namespace host {

/// What buttons and switches have in common: they look pressed while a finger or the activating key is on them, and act
/// when that is lifted on them. UI thread only.
class ActionNode : public Node {
public:
    using Node::Node;

    /// Whether somebody wants to know of the action; without, it cannot be focused.
    void SetActing(bool isActing) { isActing_ = isActing; }

    void OnFinger(const FingerEvent& event) override;
    [[nodiscard]] bool IsFocusable() const override { return isActing_; }
    bool OnFocusKey(const FocusKeyEvent& event) override;
    void OnActivateKeyEnded(KeyEnd end) override;

protected:
    [[nodiscard]] bool IsPressed() const { return isFingerInside_ || isKeyDown_; }
    /// What acting changes in the node itself, before anybody is told.
    virtual void Act() {}

private:
    void SetPressed(bool& part, bool isPressed);
    void ActAndTell();

    bool isActing_ = false;
    bool isFingerInside_ = false;
    bool isKeyDown_ = false;
};

}  // namespace host
