#include "setup/FormSetup.h"

#include "Tizen/Base/String.h"
#include "Tizen/Ui/Controls/ButtonStatus.h"
#include "setup/PopupColor.h"
#include "shared/JLib.h"
#include "shared/RequestIds.h"
#include "shared/ResourceIds.h"

using namespace Tizen::Base;
using namespace Tizen::Base::Collection;
using namespace Tizen::Ui;
using namespace Tizen::Ui::Controls;

FormSetup::FormSetup()
    : __pCheckAutoPlay(nullptr),
      __pButtonBackColor(nullptr),
      __pButtonHoleColor(nullptr),
      __pLabelTitle1(nullptr),
      __pLabelExplain1_1(nullptr),
      __pLabelExplain1_2(nullptr),
      __pLabelTitle2(nullptr),
      __pLabelExplain2(nullptr),
      __pLabelTitle3(nullptr),
      __pLabelExplain3(nullptr),
      __pPopupColor(nullptr) {}

FormSetup::~FormSetup() {
    ReleaseColorPopup();
}

bool FormSetup::Initialize() {
    Construct(IDF_FORM_SETUP);
    return true;
}

void FormSetup::InitControls() {
    InitLabel(IDC_LABEL_TITLE, IDS_SETTING);
    SetupButton(IDC_BUTTON_CLOSE, ID_BUTTON_CLOSE);
    __pButtonBackColor = dynamic_cast<Button*>(SetupButton(IDC_BUTTON_BACK_COLOR, ID_BUTTON_BACK_COLOR));
    __pButtonHoleColor = dynamic_cast<Button*>(SetupButton(IDC_BUTTON_HOLE_COLOR, ID_BUTTON_HOLE_COLOR));

    __pCheckAutoPlay = dynamic_cast<CheckButton*>(GetControl(IDC_CHECK_AUTO_PLAY, false));
    if (__pCheckAutoPlay != nullptr) {
        __pCheckAutoPlay->SetActionId(ID_AUTO_PLAY_CHECKED, ID_AUTO_PLAY_UNCHECKED, ID_NONE);
        __pCheckAutoPlay->AddActionEventListener(*this);
    }

    __pLabelTitle1 = InitLabel(IDC_LABEL_TITLE1, IDS_AUTO_PLAY0);
    __pLabelExplain1_1 = InitLabel(IDC_LABEL_EXPLAIN1_1, IDS_AUTO_PLAY1);
    __pLabelExplain1_2 = InitLabel(IDC_LABEL_EXPLAIN1_2, IDS_AUTO_PLAY2);
    __pLabelTitle2 = InitLabel(IDC_LABEL_TITLE2, IDS_BACK_COLOR0);
    __pLabelExplain2 = InitLabel(IDC_LABEL_EXPLAIN2, IDS_BACK_COLOR1);
    __pLabelTitle3 = InitLabel(IDC_LABEL_TITLE3, IDS_HOLE_COLOR0);
    __pLabelExplain3 = InitLabel(IDC_LABEL_EXPLAIN3, IDS_HOLE_COLOR1);

    if (__pCheckAutoPlay != nullptr) __pCheckAutoPlay->SetSelected(JLib::__isAutoPlay);
    UpdateColorButtons();
}

Label* FormSetup::InitLabel(const wchar_t* pControlName, const wchar_t* pTextId) {
    Label* pLabel = dynamic_cast<Label*>(GetControl(pControlName, false));
    if (pLabel == nullptr) return nullptr;
    String text;
    JLib::GetString(pTextId, text);
    pLabel->SetText(text);
    return pLabel;
}

void FormSetup::UpdateColorButtons() {
    if (__pButtonBackColor != nullptr) __pButtonBackColor->SetColor(BUTTON_STATUS_NORMAL, JLib::__colorBackground);
    if (__pButtonHoleColor != nullptr) __pButtonHoleColor->SetColor(BUTTON_STATUS_NORMAL, JLib::__colorForeground);
}

void FormSetup::ShowColorPopup() {
    JLib::SafeDestroy(__pPopupColor);
    PopupColor* pPopupColor = new PopupColor();
    pPopupColor->Initialize(this);
    pPopupColor->SetShowState(true);
    pPopupColor->Show();
    __pPopupColor = pPopupColor;
}

void FormSetup::ReleaseColorPopup() {
    JLib::SafeDestroy(__pPopupColor);
    __pPopupColor = nullptr;
}

result FormSetup::OnInitializing() {
    BaseForm::OnInitializing();
    JLib::InitScreenMetrics();
    InitControls();
    return E_SUCCESS;
}

result FormSetup::OnTerminating() {
    BaseForm::OnTerminating();
    return E_SUCCESS;
}

void FormSetup::OnUserEventReceivedN(long requestId, IList*) {
    switch (requestId) {
        case REQUEST_COLOR_CANCELED:
            ReleaseColorPopup();
            RequestRedraw(true);
            break;
        case REQUEST_COLOR_CONFIRMED:
            ReleaseColorPopup();
            UpdateColorButtons();
            RequestRedraw(true);
            break;
        default:
            break;
    }
}

void FormSetup::OnActionPerformed(const Control& source, int actionId) {
    switch (actionId) {
        case ID_BUTTON_CLOSE:
            OnBackRequested();
            break;
        case ID_AUTO_PLAY_CHECKED:
            JLib::__isAutoPlay = true;
            break;
        case ID_AUTO_PLAY_UNCHECKED:
            JLib::__isAutoPlay = false;
            break;
        case ID_BUTTON_BACK_COLOR:
            ShowColorPopup();
            __pPopupColor->EditBackColor();
            break;
        case ID_BUTTON_HOLE_COLOR:
            ShowColorPopup();
            __pPopupColor->EditHoleColor();
            break;
        default:
            BaseForm::OnActionPerformed(source, actionId);
            break;
    }
}

void FormSetup::OnBackRequested() {
    if (__pOwner != nullptr) __pOwner->SendUserEvent(REQUEST_SETUP_CLOSED, nullptr);
}
