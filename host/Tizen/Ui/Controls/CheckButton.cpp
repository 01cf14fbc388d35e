#include "Tizen/Ui/Controls/CheckButton.h"

#include "Tizen/Ui/IActionEventListener.h"
#include "runtime/screen/Screen.h"
#include "runtime/screen/controls/SwitchNode.h"

namespace Tizen {
namespace Ui {
namespace Controls {

using host::SwitchNode;
using Tizen::Base::String;

CheckButton::CheckButton() : Control(std::make_unique<SwitchNode>(GetScreen())) {
    // Unlike a button it changes something even when nobody is told.
    static_cast<SwitchNode&>(GetNode()).SetActing(true);
}

CheckButton::~CheckButton() = default;

result CheckButton::SetText(const String& text) {
    static_cast<SwitchNode&>(GetNode()).SetText(text.ToUtf8());
    return E_SUCCESS;
}

void CheckButton::SetActionId(int checkedActionId, int uncheckedActionId, int) {
    checkedActionId_ = checkedActionId;
    uncheckedActionId_ = uncheckedActionId;
}

void CheckButton::AddActionEventListener(IActionEventListener& listener) {
    listeners_.Add(listener);
}

void CheckButton::SetSelected(bool select) {
    static_cast<SwitchNode&>(GetNode()).SetChecked(select);
}

bool CheckButton::IsSelected() const {
    return static_cast<const SwitchNode&>(GetNode()).IsChecked();
}

void CheckButton::ApplyLayout(const host::LayoutControl& layout) {
    Control::ApplyLayout(layout);
    auto& node = static_cast<SwitchNode&>(GetNode());
    node.SetColors(layout.box.background, layout.checkedColor);
    node.SetTextLook(layout.text);
}

void CheckButton::OnAction() {
    const int actionId = IsSelected() ? checkedActionId_ : uncheckedActionId_;
    TraceAction(actionId);
    listeners_.TellAll(GetNode().Token(), [this, actionId](IActionEventListener& listener) {
        listener.OnActionPerformed(*this, actionId);
    });
}

}  // namespace Controls
}  // namespace Ui
}  // namespace Tizen
