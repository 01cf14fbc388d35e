#pragma once

#include "Tizen/Base/Collection/IList.h"
#include "Tizen/Base/Types.h"
#include "Tizen/Ui/Control.h"
#include "Tizen/Ui/Controls/Button.h"
#include "Tizen/Ui/Controls/CheckButton.h"
#include "Tizen/Ui/Controls/Label.h"
#include "ui/BaseForm.h"

class PopupColor;

/// The setup screen: automatic play, and the two colours by way of the colour popup. It changes the shared values only;
/// the play form stores them when it closes this form. UI thread only.
class FormSetup : public BaseForm {
public:
    FormSetup();
    ~FormSetup() override;

    /// Builds the form from its layout. Always true.
    bool Initialize();
    void InitControls();
    void UpdateColorButtons();
    void ShowColorPopup();

    result OnInitializing() override;
    result OnTerminating() override;
    void OnUserEventReceivedN(long requestId, Tizen::Base::Collection::IList* pArgs) override;
    void OnActionPerformed(const Tizen::Ui::Control& source, int actionId) override;
    void OnBackRequested() override;

private:
    static const int ID_BUTTON_CLOSE = 101;
    static const int ID_AUTO_PLAY_CHECKED = 102;
    static const int ID_AUTO_PLAY_UNCHECKED = 103;
    static const int ID_BUTTON_BACK_COLOR = 104;
    static const int ID_BUTTON_HOLE_COLOR = 105;
    static const int ID_NONE = -1;

    Tizen::Ui::Controls::Label* InitLabel(const wchar_t* pControlName, const wchar_t* pTextId);
    void ReleaseColorPopup();

    Tizen::Ui::Controls::CheckButton* __pCheckAutoPlay;
    Tizen::Ui::Controls::Button* __pButtonBackColor;
    Tizen::Ui::Controls::Button* __pButtonHoleColor;
    Tizen::Ui::Controls::Label* __pLabelTitle1;
    Tizen::Ui::Controls::Label* __pLabelExplain1_1;
    Tizen::Ui::Controls::Label* __pLabelExplain1_2;
    Tizen::Ui::Controls::Label* __pLabelTitle2;
    Tizen::Ui::Controls::Label* __pLabelExplain2;
    Tizen::Ui::Controls::Label* __pLabelTitle3;
    Tizen::Ui::Controls::Label* __pLabelExplain3;
    PopupColor* __pPopupColor;
};
