#include "Tizen/Ui/Controls/Form.h"

#include "Tizen/Ui/Controls/IFormBackEventListener.h"
#include "Tizen/Ui/HostColor.h"
#include "runtime/screen/Screen.h"
#include "runtime/screen/controls/BoxNode.h"

namespace Tizen {
namespace Ui {
namespace Controls {

using Tizen::Base::String;
using Tizen::Graphics::Color;
using Tizen::Graphics::Rectangle;

Form::Form() {
    const host::PixelSize screen = GetScreen().GetPhoneScreen();
    GetNode().SetBounds({0, 0, screen.width, screen.height});
}

Form::~Form() = default;

result Form::Construct(const String& layoutName) {
    const host::LayoutControl* pLayout = GetScreen().GetPackage().FindLayout(layoutName.ToUtf8());
    if (pLayout == nullptr || pLayout->kind != host::ControlKind::kForm) {
        // It is shown all the same, and the trace tells which one it is.
        SetName(layoutName);
        return E_FILE_NOT_FOUND;
    }
    ApplyLayout(*pLayout);
    return E_SUCCESS;
}

Rectangle Form::GetClientAreaBounds() const {
    const Rectangle bounds = GetBounds();
    return clientArea_.value_or(Rectangle(0, 0, bounds.width, bounds.height));
}

result Form::SetBackgroundColor(const Color& color) {
    // A form has nothing under it to blend with. What is drawn on it in its own colour then looks like it.
    static_cast<host::BoxNode&>(GetNode()).SetBackground(
        ToHost(Color(color.GetRed(), color.GetGreen(), color.GetBlue())));
    return E_SUCCESS;
}

void Form::SetFormBackEventListener(IFormBackEventListener* pListener) {
    pBackListener_ = pListener;
}

void Form::ApplyLayout(const host::LayoutControl& layout) {
    Container::ApplyLayout(layout);
    clientArea_.reset();
    if (const auto& area = layout.clientArea) clientArea_.emplace(area->x, area->y, area->width, area->height);
    static_cast<host::BoxNode&>(GetNode()).SetLook(layout.box);
}

void Form::OnBackReleased() {
    if (pBackListener_ != nullptr) pBackListener_->OnFormBackRequested(*this);
}

}  // namespace Controls
}  // namespace Ui
}  // namespace Tizen
