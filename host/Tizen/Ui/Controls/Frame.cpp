#include "Tizen/Ui/Controls/Frame.h"

#include "runtime/Runtime.h"
#include "runtime/screen/Node.h"
#include "runtime/screen/Screen.h"

namespace Tizen {
namespace Ui {
namespace Controls {

namespace {

void TraceForm(const char* pEvent, const Control& form) {
    host::Runtime::Current().GetTrace().Add("form", pEvent).Text("name", form.GetName().ToUtf8());
}

}  // namespace

Frame::Frame() {
    const host::PixelSize screen = GetScreen().GetPhoneScreen();
    GetNode().SetBounds({0, 0, screen.width, screen.height});
}

Frame::~Frame() = default;

result Frame::Construct() {
    return E_SUCCESS;
}

result Frame::AddControl(const Control& control) {
    const auto* pForm = dynamic_cast<const Form*>(&control);
    if (pForm == nullptr || pForm->GetParent() != nullptr) return E_INVALID_ARG;
    TraceForm("added", *pForm);
    return Container::AddControl(control);
}

result Frame::RemoveControl(const Control& control) {
    if (control.GetParent() != this) return E_OBJ_NOT_FOUND;
    const bool isCurrent = &control == pCurrentForm_;
    if (isCurrent) pCurrentForm_ = nullptr;
    TraceForm("removed", control);
    const result removed = Container::RemoveControl(control);
    if (isCurrent) ShowLastForm();
    return removed;
}

void Frame::OnChildDeleted(const Control& child) {
    TraceForm("removed", child);
    if (&child != pCurrentForm_) return;
    pCurrentForm_ = nullptr;
    ShowLastForm();
}

void Frame::ShowLastForm() {
    if (GetControlCount() > 0) SetCurrentForm(static_cast<const Form&>(*GetControl(GetControlCount() - 1)));
}

void Frame::Terminate() {
    pCurrentForm_ = nullptr;
    for (int i = 0; i < GetControlCount(); ++i) TraceForm("removed", *GetControl(i));
    Container::Terminate();
}

result Frame::SetCurrentForm(const Form& form) {
    if (form.GetParent() != this) return E_OBJ_NOT_FOUND;
    if (&form == pCurrentForm_) return E_SUCCESS;
    // The frame owns the form and may change it, which the framework's signature does not show.
    pCurrentForm_ = const_cast<Form*>(&form);
    TraceForm("current", form);
    GetScreen().SetCurrentForm(&NodeOf(*pCurrentForm_));
    return E_SUCCESS;
}

result Frame::EnterApplication() {
    Initialize();
    return E_SUCCESS;
}

}  // namespace Controls
}  // namespace Ui
}  // namespace Tizen
