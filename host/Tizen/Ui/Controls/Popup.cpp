#include "Tizen/Ui/Controls/Popup.h"

#include "runtime/Runtime.h"
#include "runtime/screen/Screen.h"
#include "runtime/screen/controls/BoxNode.h"

namespace Tizen {
namespace Ui {
namespace Controls {

using Tizen::Base::String;

Popup::Popup() = default;

Popup::~Popup() {
    if (wasShown_) host::Runtime::Current().GetTrace().Add("popup", "destroyed").Text("name", GetNode().Name());
}

result Popup::Construct(const String& layoutName) {
    const host::LayoutControl* pLayout = GetScreen().GetPackage().FindLayout(layoutName.ToUtf8());
    if (pLayout == nullptr || pLayout->kind != host::ControlKind::kPopup) {
        // It is shown all the same, and the trace tells which one it is.
        SetName(layoutName);
        return E_FILE_NOT_FOUND;
    }
    ApplyLayout(*pLayout);
    Initialize();
    return E_SUCCESS;
}

result Popup::Show() {
    Initialize();
    GetNode().SetVisible(true);
    wasShown_ = true;
    host::Runtime::Current().GetTrace().Add("popup", "shown").Text("name", GetNode().Name());
    GetScreen().ShowPopup(GetNode());
    return E_SUCCESS;
}

void Popup::ApplyLayout(const host::LayoutControl& layout) {
    Container::ApplyLayout(layout);
    static_cast<host::BoxNode&>(GetNode()).SetLook(layout.box);
}

}  // namespace Controls
}  // namespace Ui
}  // namespace Tizen
