#include "app/BrevantFrame.h"

#include "play/BrevantForm.h"

BrevantFrame::BrevantFrame() : __pFormMain(nullptr) {}

BrevantFrame::~BrevantFrame() = default;

result BrevantFrame::OnInitializing() {
    __pFormMain = new BrevantForm();
    __pFormMain->Initialize();
    AddControl(*__pFormMain);
    SetCurrentForm(*__pFormMain);
    __pFormMain->Invalidate(true);
    return E_SUCCESS;
}

result BrevantFrame::OnTerminating() {
    return E_SUCCESS;
}

void BrevantFrame::OnForeground() {
    if (__pFormMain != nullptr) __pFormMain->OnForeground();
}

void BrevantFrame::OnBackground() {
    if (__pFormMain != nullptr) __pFormMain->OnBackground();
}

void BrevantFrame::OnScreenOn() {
    if (__pFormMain != nullptr) __pFormMain->OnScreenOn();
}

void BrevantFrame::OnScreenOff() {
    if (__pFormMain != nullptr) __pFormMain->OnScreenOff();
}
