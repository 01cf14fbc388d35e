#include "setup/PopupColor.h"

#include "Tizen/Base/String.h"
#include "Tizen/Graphics/Dimension.h"
#include "Tizen/Ui/Controls/ButtonStatus.h"
#include "Tizen/Ui/Controls/Label.h"
#include "shared/JLib.h"
#include "shared/RequestIds.h"
#include "shared/ResourceIds.h"

using namespace Tizen::Base;
using namespace Tizen::Graphics;
using namespace Tizen::Ui;
using namespace Tizen::Ui::Controls;

namespace {

const int TICK_MS = 60;

// The frame's width as a part of the button's height, and its outline in pixels.
const float FRAME_RATIO = 0.25f;
const int OUTLINE_DISTANCE = 3;
const int OUTLINE_WIDTH = 7;
const Dimension FRAME_ARC(10, 10);
const Dimension OUTLINE_ARC(15, 15);

}  // namespace

PopupColor::PopupColor()
    : __pButtonHoleColor(nullptr), __pButtonBackColor(nullptr), __pColorPicker(nullptr), __editTarget(TARGET_HOLE) {}

PopupColor::~PopupColor() = default;

bool PopupColor::Initialize(Control* pOwner) {
    SetOwner(pOwner);
    Construct(IDP_POPUP_COLOR);
    return true;
}

void PopupColor::InitControls() {
    String text;
    JLib::GetString(IDS_COLOR, text);
    Label* pTitle = dynamic_cast<Label*>(GetControl(IDC_LABEL_TITLE, false));
    if (pTitle != nullptr) pTitle->SetText(text);

    SetupButton(IDC_BUTTON_CONFIRM, ID_BUTTON_CONFIRM);
    SetupButton(IDC_BUTTON_CANCEL, ID_BUTTON_CANCEL);

    __pButtonHoleColor = dynamic_cast<Button*>(SetupButton(IDC_BUTTON_HOLE_COLOR, ID_BUTTON_HOLE_COLOR));
    JLib::GetString(IDS_HOLE_COLOR, text);
    if (__pButtonHoleColor != nullptr) __pButtonHoleColor->SetText(text);
    __pButtonBackColor = dynamic_cast<Button*>(SetupButton(IDC_BUTTON_BACK_COLOR, ID_BUTTON_BACK_COLOR));
    JLib::GetString(IDS_BACK_COLOR, text);
    if (__pButtonBackColor != nullptr) __pButtonBackColor->SetText(text);

    __pColorPicker = dynamic_cast<ColorPicker*>(GetControl(IDC_COLORPICKER, true));
    if (__pColorPicker != nullptr) __pColorPicker->AddColorChangeEventListener(*this);
    UpdateColorButtons();
}

void PopupColor::UpdateColorButtons() {
    if (__pButtonHoleColor != nullptr) {
        __pButtonHoleColor->SetColor(BUTTON_STATUS_NORMAL, __colorHole);
        __pButtonHoleColor->SetTextColor(__colorBack);
    }
    if (__pButtonBackColor != nullptr) {
        __pButtonBackColor->SetColor(BUTTON_STATUS_NORMAL, __colorBack);
        __pButtonBackColor->SetTextColor(__colorHole);
    }
}

void PopupColor::DrawSelectionFrame(Canvas& canvas, Rectangle frame, Color fill, Color line) {
    canvas.FillRoundRectangle(fill, frame, FRAME_ARC);
    canvas.SetForegroundColor(line);
    const Rectangle outline = JLib::InflateRect(frame, OUTLINE_DISTANCE);
    canvas.SetLineWidth(OUTLINE_WIDTH);
    canvas.DrawRoundRectangle(outline, OUTLINE_ARC);
}

void PopupColor::EditHoleColor() {
    Edit(TARGET_HOLE);
}

void PopupColor::EditBackColor() {
    Edit(TARGET_BACK);
}

void PopupColor::Edit(int target) {
    __editTarget = target;
    if (__pColorPicker != nullptr) __pColorPicker->SetColor(target == TARGET_HOLE ? __colorHole : __colorBack);
    RequestRedrawOnTick();
}

result PopupColor::OnInitializing() {
    BasePopup::OnInitializing();
    JLib::InitScreenMetrics();
    __colorHole = JLib::__colorForeground;
    __colorBack = JLib::__colorBackground;
    InitControls();
    StartTimer(TICK_MS);
    return E_SUCCESS;
}

result PopupColor::OnTerminating() {
    Popup::OnTerminating();
    return E_SUCCESS;
}

result PopupColor::OnDraw() {
    BasePopup::OnDraw();
    if (__pCanvas == nullptr) return E_SUCCESS;
    const bool isBack = __editTarget != TARGET_HOLE;
    const Button* pSelected = isBack ? __pButtonBackColor : __pButtonHoleColor;
    const Rectangle frame = JLib::GetInflatedBounds(pSelected, FRAME_RATIO);
    DrawSelectionFrame(*__pCanvas, frame, isBack ? __colorBack : __colorHole, isBack ? __colorHole : __colorBack);
    return E_SUCCESS;
}

void PopupColor::OnActionPerformed(const Control& source, int actionId) {
    switch (actionId) {
        case ID_BUTTON_CONFIRM:
            // The owner hears of it after this handler, and then finds the new colours.
            SendUserEventToOwner(REQUEST_COLOR_CONFIRMED);
            JLib::__colorForeground = __colorHole;
            JLib::__colorBackground = __colorBack;
            break;
        case ID_BUTTON_CANCEL:
            SendUserEventToOwner(REQUEST_COLOR_CANCELED);
            break;
        case ID_BUTTON_HOLE_COLOR:
            EditHoleColor();
            break;
        case ID_BUTTON_BACK_COLOR:
            EditBackColor();
            break;
        default:
            BasePopup::OnActionPerformed(source, actionId);
            break;
    }
}

void PopupColor::OnPopupBackRequested() {
    SendUserEventToOwner(REQUEST_COLOR_CANCELED);
}

void PopupColor::OnColorChanged(const Control&, const Color& color) {
    if (__editTarget != TARGET_HOLE) {
        __colorBack = color;
    } else {
        __colorHole = color;
    }
    UpdateColorButtons();
    RequestRedrawOnTick();
}
