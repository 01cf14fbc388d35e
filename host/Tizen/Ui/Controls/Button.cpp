#include "Tizen/Ui/Controls/Button.h"

#include "Tizen/Ui/HostColor.h"
#include "Tizen/Ui/IActionEventListener.h"
#include "runtime/screen/Screen.h"
#include "runtime/screen/controls/ButtonNode.h"

namespace Tizen {
namespace Ui {
namespace Controls {

using host::ButtonNode;
using Tizen::Base::String;
using Tizen::Graphics::Bitmap;
using Tizen::Graphics::Color;

Button::Button() : Control(std::make_unique<ButtonNode>(GetScreen())) {}

Button::~Button() = default;

result Button::SetText(const String& text) {
    static_cast<ButtonNode&>(GetNode()).SetText(text.ToUtf8());
    return E_SUCCESS;
}

result Button::SetTextColor(const Color& color) {
    static_cast<ButtonNode&>(GetNode()).SetTextColor(ToHost(color));
    return E_SUCCESS;
}

result Button::SetColor(ButtonStatus status, const Color& color) {
    auto& node = static_cast<ButtonNode&>(GetNode());
    switch (status) {
        case BUTTON_STATUS_NORMAL:
            node.SetColor(ButtonNode::State::kNormal, ToHost(color));
            return E_SUCCESS;
        case BUTTON_STATUS_PRESSED:
            node.SetColor(ButtonNode::State::kPressed, ToHost(color));
            return E_SUCCESS;
    }
    return E_INVALID_ARG;
}

result Button::SetNormalBackgroundBitmap(const Bitmap& bitmap) {
    TraceBitmap(bitmap.GetFileName());
    static_cast<ButtonNode&>(GetNode()).SetPicture(ButtonNode::State::kNormal, bitmap.GetPicture());
    return E_SUCCESS;
}

result Button::SetPressedBackgroundBitmap(const Bitmap& bitmap) {
    TraceBitmap(bitmap.GetFileName());
    static_cast<ButtonNode&>(GetNode()).SetPicture(ButtonNode::State::kPressed, bitmap.GetPicture());
    return E_SUCCESS;
}

void Button::SetActionId(int actionId) {
    actionId_ = actionId;
}

void Button::AddActionEventListener(IActionEventListener& listener) {
    listeners_.Add(listener);
    static_cast<ButtonNode&>(GetNode()).SetActing(true);
}

void Button::ApplyLayout(const host::LayoutControl& layout) {
    Control::ApplyLayout(layout);
    auto& node = static_cast<ButtonNode&>(GetNode());
    const host::Package& package = GetScreen().GetPackage();
    node.SetLook(layout.box, layout.pressedColor);
    node.SetTextLook(layout.text, layout.pressedTextColor);
    node.SetPicture(ButtonNode::State::kNormal, package.PictureNamed(layout.picture));
    node.SetPicture(ButtonNode::State::kPressed, package.PictureNamed(layout.pressedPicture));
}

void Button::OnAction() {
    if (listeners_.IsEmpty()) return;
    TraceAction(actionId_);
    const int actionId = actionId_;
    listeners_.TellAll(GetNode().Token(), [this, actionId](IActionEventListener& listener) {
        listener.OnActionPerformed(*this, actionId);
    });
}

}  // namespace Controls
}  // namespace Ui
}  // namespace Tizen
