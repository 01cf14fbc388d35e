#pragma once

#include "Tizen/Base/Types.h"
#include "Tizen/Graphics/Canvas.h"
#include "Tizen/Graphics/Color.h"
#include "Tizen/Graphics/Rectangle.h"
#include "Tizen/Ui/Control.h"
#include "Tizen/Ui/Controls/Button.h"
#include "Tizen/Ui/Controls/ColorPicker.h"
#include "Tizen/Ui/IColorChangeEventListener.h"
#include "setup/BasePopup.h"

/// Where the player picks the two colours of the play screen. It works on copies: only Confirm puts them into the
/// shared values. UI thread only; it writes no settings.
class PopupColor : public BasePopup, public Tizen::Ui::IColorChangeEventListener {
public:
    PopupColor();
    ~PopupColor() override;

    /// Builds the popup from its layout. Always true.
    bool Initialize(Tizen::Ui::Control* pOwner);
    void InitControls();
    void UpdateColorButtons();
    /// Fills `frame` and draws an outline around it.
    void DrawSelectionFrame(Tizen::Graphics::Canvas& canvas, Tizen::Graphics::Rectangle frame,
                            Tizen::Graphics::Color fill, Tizen::Graphics::Color line);

    // What the picker edits. The owner calls one of them when the popup is shown.
    void EditHoleColor();
    void EditBackColor();

    result OnInitializing() override;
    result OnTerminating() override;
    result OnDraw() override;
    void OnActionPerformed(const Tizen::Ui::Control& source, int actionId) override;
    void OnPopupBackRequested() override;
    void OnColorChanged(const Tizen::Ui::Control& source, const Tizen::Graphics::Color& color) override;

private:
    static const int ID_BUTTON_CONFIRM = 101;
    static const int ID_BUTTON_CANCEL = 102;
    static const int ID_BUTTON_HOLE_COLOR = 103;
    static const int ID_BUTTON_BACK_COLOR = 104;

    static const int TARGET_HOLE = 0;
    static const int TARGET_BACK = 1;

    void Edit(int target);

    Tizen::Ui::Controls::Button* __pButtonHoleColor;
    Tizen::Ui::Controls::Button* __pButtonBackColor;
    Tizen::Ui::Controls::ColorPicker* __pColorPicker;
    int __editTarget;
    Tizen::Graphics::Color __colorHole;
    Tizen::Graphics::Color __colorBack;
};
