#pragma once

#include "Tizen/Base/Types.h"
#include "Tizen/Ui/Control.h"
#include "setup/BasePopup.h"

/// The help page. What it shows stands in its layout; Confirm and Back ask the owner to close it. UI thread only.
class PopupHelp : public BasePopup {
public:
    PopupHelp();
    ~PopupHelp() override;

    /// Builds the popup from its layout. Always true.
    bool Initialize(Tizen::Ui::Control* pOwner);
    void InitControls();

    result OnInitializing() override;
    result OnTerminating() override;
    void OnActionPerformed(const Tizen::Ui::Control& source, int actionId) override;
    void OnPopupBackRequested() override;

private:
    static const int ID_BUTTON_CONFIRM = 101;
};
