#include "ui/BaseForm.h"

#include "Tizen/Ui/Controls/Button.h"
#include "Tizen/Ui/KeyCode.h"
#include "shared/JLib.h"

using namespace Tizen::Base;
using namespace Tizen::Base::Runtime;
using namespace Tizen::Graphics;
using namespace Tizen::Media;
using namespace Tizen::Ui;
using namespace Tizen::Ui::Controls;

namespace {

const int TICK_MS = 30;

}  // namespace

BaseForm::BaseForm()
    : __pOwner(nullptr),
      __isBackRequested(false),
      __pCanvas(nullptr),
      __pFrame(nullptr),
      __isRedraw(false),
      __timerInterval(0) {}

BaseForm::~BaseForm() {
    JLib::SafeDelete(__pCanvas);
}

result BaseForm::OnInitializing() {
    AddKeyEventListener(*this);
    __pFrame = dynamic_cast<Frame*>(GetParent());
    __timer.Construct(*this);
    __timerInterval = 0;
    __isRedraw = false;
    return E_SUCCESS;
}

result BaseForm::OnTerminating() {
    return E_SUCCESS;
}

result BaseForm::OnDraw() {
    if (__pCanvas == nullptr) __pCanvas = GetCanvasN();
    return E_SUCCESS;
}

void BaseForm::OnActionPerformed(const Control&, int) {}

void BaseForm::OnTimerExpired(Timer& timer) {
    if (&timer != &__timer) return;
    if (__isRedraw) {
        __isRedraw = false;
        RequestRedraw(true);
    }
    __timer.Start(__timerInterval);
}

void BaseForm::OnControlAnimationStarted(const Control&) {}

void BaseForm::OnControlAnimationRepeated(const Control&, long) {}

void BaseForm::OnControlAnimationFinished(const Control&) {}

void BaseForm::OnControlAnimationStopped(const Control&) {}

void BaseForm::OnTouchPressed(const Control&, const Point&, const TouchEventInfo&) {}

void BaseForm::OnTouchLongPressed(const Control&, const Point&, const TouchEventInfo&) {}

void BaseForm::OnTouchReleased(const Control&, const Point&, const TouchEventInfo&) {}

void BaseForm::OnTouchMoved(const Control&, const Point&, const TouchEventInfo&) {}

void BaseForm::OnTouchDoublePressed(const Control&, const Point&, const TouchEventInfo&) {}

void BaseForm::OnTouchFocusIn(const Control&, const Point&, const TouchEventInfo&) {}

void BaseForm::OnTouchFocusOut(const Control&, const Point&, const TouchEventInfo&) {}

void BaseForm::OnPlayerOpened(result) {}

void BaseForm::OnPlayerEndOfClip() {}

void BaseForm::OnPlayerSeekCompleted(result) {}

void BaseForm::OnPlayerBuffering(int) {}

void BaseForm::OnPlayerErrorOccurred(PlayerErrorReason) {}

void BaseForm::OnPlayerInterrupted() {}

void BaseForm::OnPlayerReleased() {}

void BaseForm::OnKeyPressed(const Control&, int) {}

void BaseForm::OnKeyLongPressed(const Control&, int) {}

void BaseForm::OnKeyReleased(const Control&, int keyCode) {
    if (keyCode != KEY_BACK) return;
    __isBackRequested = true;
    OnBackRequested();
}

Control* BaseForm::SetupButton(const String& controlName, int actionId) {
    Control* pControl = GetControl(controlName, false);
    Button* pButton = dynamic_cast<Button*>(pControl);
    if (pButton != nullptr) {
        pButton->SetActionId(actionId);
        pButton->AddActionEventListener(*this);
    }
    return pControl;
}

void BaseForm::StartTimer() {
    __timer.Start(TICK_MS);
    __timerInterval = TICK_MS;
}

void BaseForm::RequestRedrawOnTick() {
    __isRedraw = true;
}

void BaseForm::ShowChildForm(BaseForm* pForm, BaseForm* pOwner) {
    pForm->__pOwner = pOwner;
    if (__pFrame == nullptr) return;
    __pFrame->AddControl(*pForm);
    __pFrame->SetCurrentForm(*pForm);
    pForm->Invalidate(true);
}

void BaseForm::CloseForm() {
    if (__pFrame == nullptr || __pFrame->GetCurrentForm() == nullptr) return;
    __pFrame->RemoveControl(*__pFrame->GetCurrentForm());
}

void BaseForm::TerminateApp() {
    JLib::TerminateApp();
}
