#include "setup/PopupHelp.h"

#include "Tizen/Base/String.h"
#include "Tizen/Ui/Controls/Button.h"
#include "shared/JLib.h"
#include "shared/RequestIds.h"
#include "shared/ResourceIds.h"

using namespace Tizen::Base;
using namespace Tizen::Ui;
using namespace Tizen::Ui::Controls;

PopupHelp::PopupHelp() = default;

PopupHelp::~PopupHelp() = default;

bool PopupHelp::Initialize(Control* pOwner) {
    SetOwner(pOwner);
    Construct(IDP_POPUP_HELP);
    return true;
}

void PopupHelp::InitControls() {
    String text;
    JLib::GetString(IDS_HELP, text);
    Button* pTitle = dynamic_cast<Button*>(GetControl(IDC_BUTTON_TITLE, false));
    if (pTitle != nullptr) pTitle->SetText(text);
    SetupButton(IDC_BUTTON_CONFIRM, ID_BUTTON_CONFIRM);
}

result PopupHelp::OnInitializing() {
    BasePopup::OnInitializing();
    JLib::InitScreenMetrics();
    InitControls();
    return E_SUCCESS;
}

result PopupHelp::OnTerminating() {
    Popup::OnTerminating();
    return E_SUCCESS;
}

void PopupHelp::OnActionPerformed(const Control& source, int actionId) {
    if (actionId == ID_BUTTON_CONFIRM) {
        SendUserEventToOwner(REQUEST_HELP_CLOSED);
    } else {
        BasePopup::OnActionPerformed(source, actionId);
    }
}

void PopupHelp::OnPopupBackRequested() {
    SendUserEventToOwner(REQUEST_HELP_CLOSED);
}
