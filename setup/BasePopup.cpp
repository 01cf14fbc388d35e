#include "setup/BasePopup.h"

#include "Tizen/Ui/Controls/Button.h"
#include "Tizen/Ui/KeyCode.h"
#include "shared/JLib.h"

using namespace Tizen::Base;
using namespace Tizen::Base::Runtime;
using namespace Tizen::Ui;
using namespace Tizen::Ui::Controls;

BasePopup::BasePopup() : __pOwner(nullptr), __pCanvas(nullptr), __isRedraw(false), __timerInterval(0) {}

BasePopup::~BasePopup() {
    JLib::SafeDelete(__pCanvas);
}

result BasePopup::OnInitializing() {
    AddKeyEventListener(*this);
    __timer.Construct(*this);
    __timerInterval = 0;
    __isRedraw = false;
    return E_SUCCESS;
}

result BasePopup::OnDraw() {
    if (__pCanvas == nullptr) __pCanvas = GetCanvasN();
    return E_SUCCESS;
}

void BasePopup::OnActionPerformed(const Control&, int) {}

void BasePopup::OnTimerExpired(Timer& timer) {
    if (&timer != &__timer) return;
    if (__isRedraw) {
        __isRedraw = false;
        RequestRedraw(true);
    }
    __timer.Start(__timerInterval);
}

void BasePopup::OnKeyPressed(const Control&, int) {}

void BasePopup::OnKeyLongPressed(const Control&, int) {}

void BasePopup::OnKeyReleased(const Control&, int keyCode) {
    if (keyCode == KEY_BACK) OnPopupBackRequested();
}

void BasePopup::SetOwner(Control* pOwner) {
    __pOwner = pOwner;
}

void BasePopup::SendUserEventToOwner(long requestId) {
    if (__pOwner != nullptr) __pOwner->SendUserEvent(requestId, nullptr);
}

Control* BasePopup::SetupButton(const String& controlName, int actionId) {
    Control* pControl = GetControl(controlName, false);
    Button* pButton = dynamic_cast<Button*>(pControl);
    if (pButton != nullptr) {
        pButton->SetActionId(actionId);
        pButton->AddActionEventListener(*this);
    }
    return pControl;
}

void BasePopup::StartTimer(int intervalMs) {
    __timer.Start(intervalMs);
    __timerInterval = intervalMs;
}

void BasePopup::RequestRedrawOnTick() {
    __isRedraw = true;
}
