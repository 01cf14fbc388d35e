#include "play/BrevantForm.h"

#include <algorithm>

#include "Tizen/App/UiApp.h"
#include "Tizen/Base/String.h"
#include "Tizen/Graphics/Bitmap.h"
#include "Tizen/Graphics/Rectangle.h"
#include "Tizen/Ui/Container.h"
#include "Tizen/Ui/Controls/Frame.h"
#include "play/FingeringTable.h"
#include "setup/FormSetup.h"
#include "setup/PopupHelp.h"
#include "shared/JLib.h"
#include "shared/RequestIds.h"
#include "shared/ResourceIds.h"
#include "splash/FormSplash.h"

using namespace Tizen::App;
using namespace Tizen::Base;
using namespace Tizen::Base::Collection;
using namespace Tizen::Base::Runtime;
using namespace Tizen::Graphics;
using namespace Tizen::Ui;
using namespace Tizen::Ui::Controls;

namespace {

const int SPLASH_DELAY_MS = 5;
const int MAX_NAME_LENGTH = 50;

const wchar_t* SETTINGS_SECTION = L"Setup";
const wchar_t* SETTING_BACK_COLOR = L"BackColor";
const wchar_t* SETTING_HOLE_COLOR = L"HoleColor";
const wchar_t* SETTING_AUTO_PLAY = L"AutoPlay";
const wchar_t* SETTING_FIRST_BLOW = L"FirstBlow";
const Color DEFAULT_BACK_COLOR(226, 100, 111, 255);
const Color DEFAULT_HOLE_COLOR(255, 194, 48, 255);

// One below the midpoint 128, which is silence; LEVEL_PER_SAMPLE is 1/128.
const int SILENT_PEAK = 127;
const float LEVEL_PER_SAMPLE = 0.0078125f;
const float BREATH_THRESHOLD = 0.2f;
const float VOLUME_STEPS_PER_LEVEL = 16.0f;
const int VOLUME_STEP_MAX = 15;

const int OPEN_OCTAVE = 5;

// The menu's icon runs through its frames 1 to 4; a target is the end of the way, exclusive.
const int MENU_FRAME_FIRST = 1;
const int MENU_FRAME_LAST = 4;
const int MENU_TARGET_OPEN = 5;
const int MENU_TARGET_CLOSED = 0;
const int MENU_TARGET_OPENING_MIN = 2;

String FormatName(const wchar_t* pFormat, int number) {
    String name;
    name.Format(MAX_NAME_LENGTH, pFormat, number);
    return name;
}

}  // namespace

BrevantForm::BrevantForm()
    : __pButtonMenu(nullptr),
      __pButtonHelp(nullptr),
      __pButtonSetup(nullptr),
      __pLabelIconVolume(nullptr),
      __pLabelVolume(nullptr),
      __pLabelIconBlow(nullptr),
      __blowLevel(0.0f),
      __isBlowing(false),
      __volumeStep(0),
      __isVolumeChanged(false),
      __menuFrameTarget(0),
      __menuFrame(0),
      __pHoles(),
      __pPitchPlayer(nullptr),
      __pMikeInputCheck(nullptr),
      __pPopupHelp(nullptr),
      __pFormSetup(nullptr),
      __pendingMenuAction(MENU_ACTION_NONE),
      __pSplashTimer(nullptr),
      __pFormSplash(nullptr) {}

BrevantForm::~BrevantForm() {
    if (__pPitchPlayer != nullptr) {
        __pPitchPlayer->Release();
        JLib::SafeDelete(__pPitchPlayer);
    }
    // After the Back key the process ends and takes the microphone with it.
    if (!__isBackRequested) {
        StopMike();
        JLib::SafeDelete(__pMikeInputCheck);
    }
    JLib::SafeDestroy(__pPopupHelp);
    JLib::SafeDelete(__pSplashTimer);
}

bool BrevantForm::Initialize() {
    Construct(IDF_FORM);
    return true;
}

result BrevantForm::OnInitializing() {
    BaseForm::OnInitializing();
    JLib::InitScreenMetrics();
    SetShowState(false);
    LoadSettings();
    InitMenuButtons();
    __pLabelIconVolume = GetControl(IDC_LABEL_ICON_VOLUME, false);
    __pLabelVolume = dynamic_cast<Label*>(GetControl(IDC_LABEL_VOLUME, false));
    __pLabelIconBlow = GetControl(IDC_LABEL_ICON_BLOW, false);
    CreateHoles();
    __pSplashTimer = new Timer();
    __pSplashTimer->Construct(*this);
    __pSplashTimer->Start(SPLASH_DELAY_MS);
    return E_SUCCESS;
}

result BrevantForm::OnTerminating() {
    BaseForm::OnTerminating();
    return E_SUCCESS;
}

void BrevantForm::OnUserEventReceivedN(long requestId, IList*) {
    switch (requestId) {
        case REQUEST_SPLASH_DONE:
            RemoveSplash();
            ApplyFirstBlowHint();
            UpdateBlowDetection();
            StartTimer();
            SetShowState(true);
            RequestRedrawOnTick();
            break;
        case REQUEST_HELP_CLOSED:
            OnHelpClosed();
            break;
        case REQUEST_SETUP_CLOSED:
            OnSetupClosed();
            break;
        default:
            break;
    }
}

void BrevantForm::OnActionPerformed(const Control& source, int actionId) {
    switch (actionId) {
        case ID_BUTTON_SETUP:
            __pendingMenuAction = MENU_ACTION_SETUP;
            StopMike();
            ToggleMenu();
            break;
        case ID_BUTTON_HELP:
            __pendingMenuAction = MENU_ACTION_HELP;
            StopMike();
            ToggleMenu();
            break;
        case ID_BUTTON_MENU:
            ToggleMenu();
            break;
        default:
            BaseForm::OnActionPerformed(source, actionId);
            break;
    }
}

void BrevantForm::OnTimerExpired(Timer& timer) {
    if (&timer == __pSplashTimer) {
        ShowSplash();
    } else if (&timer == &__timer) {
        UpdateVolumeDisplay();
        UpdateMenuAnimation();
    }
    BaseForm::OnTimerExpired(timer);
}

void BrevantForm::OnBackRequested() {
    TerminateApp();
}

void BrevantForm::OnHolePressed(int) {
    UpdateTone();
}

void BrevantForm::OnHoleReleased(int) {
    UpdateTone();
}

void BrevantForm::OnMikeStateChanged() {}

void BrevantForm::OnMikeLevelChanged(unsigned char peak, float) {
    __blowLevel = static_cast<float>(peak - SILENT_PEAK) * LEVEL_PER_SAMPLE;
    const int step = std::min(static_cast<int>(__blowLevel * VOLUME_STEPS_PER_LEVEL), VOLUME_STEP_MAX);
    if (step != __volumeStep) {
        __volumeStep = step;
        __isVolumeChanged = true;
    }

    const bool isBlowing = __blowLevel >= BREATH_THRESHOLD;
    if (isBlowing == __isBlowing) return;
    __isBlowing = isBlowing;
    UpdateTone();
    if (__isBlowing && __pLabelIconBlow != nullptr && __pLabelIconBlow->GetShowState()) {
        __pLabelIconBlow->SetShowState(false);
        JLib::WriteRegInt(SETTINGS_SECTION, SETTING_FIRST_BLOW, 1);
    }
}

void BrevantForm::OnForeground() {
    if (!JLib::__isAutoPlay && __pendingMenuAction == MENU_ACTION_NONE) StartMike();
}

void BrevantForm::OnBackground() {
    if (__pendingMenuAction == MENU_ACTION_NONE) StopMike();
}

void BrevantForm::OnScreenOn() {
    OnForeground();
}

void BrevantForm::OnScreenOff() {
    OnBackground();
}

void BrevantForm::LoadSettings() {
    Color color;
    JLib::ReadRegColor(SETTINGS_SECTION, SETTING_BACK_COLOR, color, DEFAULT_BACK_COLOR);
    JLib::__colorBackground = color;
    SetBackColor(color);
    JLib::ReadRegColor(SETTINGS_SECTION, SETTING_HOLE_COLOR, color, DEFAULT_HOLE_COLOR);
    JLib::__colorForeground = color;
    int value = 0;
    JLib::ReadRegInt(SETTINGS_SECTION, SETTING_AUTO_PLAY, value, 0);
    JLib::__isAutoPlay = value == 1;

    __blowLevel = 0.0f;
    __isBlowing = false;
    __volumeStep = 0;
    __isVolumeChanged = false;
    __pendingMenuAction = MENU_ACTION_NONE;
    __menuFrameTarget = 0;
    __menuFrame = 0;

    __pPitchPlayer = new PitchPlayer();
    __pPitchPlayer->Construct();
    __pMikeInputCheck = new MikeInputCheck(this);
    __pMikeInputCheck->Construct();
}

void BrevantForm::CreateHoles() {
    Container* pPanel = dynamic_cast<Container*>(GetControl(IDC_PANEL_HOLE, false));
    if (pPanel == nullptr) return;
    const Rectangle panel = pPanel->GetBounds();
    const int left = panel.width / 2;
    const int right = panel.width - left;
    const int top = panel.height / 2;
    const int bottom = panel.height - top;
    const Rectangle quadrants[HOLE_COUNT] = {Rectangle(0, 0, left, top), Rectangle(left, 0, right, top),
                                             Rectangle(0, top, left, bottom), Rectangle(left, top, right, bottom)};

    for (int i = 0; i < HOLE_COUNT; ++i) {
        JHole* pHole = new JHole();
        pHole->Construct(quadrants[i], pPanel);
        pPanel->AddControl(*pHole);
        __pHoles[i] = pHole;
        pHole->SetHoleColor(JLib::__colorForeground);
        pHole->SetBackColor(JLib::__colorBackground);
        pHole->SetHoleIndex(i);
        pHole->SetHoleListener(this);

        Control* pLabel = pPanel->GetControl(FormatName(L"IDC_LABEL_HOLE%d", i + 1), false);
        if (pLabel == nullptr) continue;
        pLabel->SetShowState(false);
        Rectangle hole = pLabel->GetBounds();
        hole.x -= quadrants[i].x;
        hole.y -= quadrants[i].y;
        pHole->SetHoleBounds(hole);
    }
}

void BrevantForm::SetBackColor(const Color& color) {
    SetBackgroundColor(color);
    for (JHole* pHole : __pHoles) {
        if (pHole != nullptr) pHole->SetBackColor(color);
    }
    RequestRedrawOnTick();
}

void BrevantForm::SetHoleColor(const Color& color) {
    for (JHole* pHole : __pHoles) {
        if (pHole != nullptr) pHole->SetHoleColor(color);
    }
    RequestRedrawOnTick();
}

void BrevantForm::UpdateBlowDetection() {
    if (!JLib::__isAutoPlay && __pendingMenuAction == MENU_ACTION_NONE) {
        StartMike();
    } else {
        StopMike();
    }
}

void BrevantForm::StartMike() {
    if (__pMikeInputCheck != nullptr) __pMikeInputCheck->Start();
}

void BrevantForm::StopMike() {
    if (__pMikeInputCheck != nullptr) __pMikeInputCheck->Stop();
}

void BrevantForm::UpdateVolumeVisibility() {
    if (__pLabelIconVolume != nullptr) __pLabelIconVolume->SetShowState(!JLib::__isAutoPlay);
    if (__pLabelVolume != nullptr) __pLabelVolume->SetShowState(!JLib::__isAutoPlay);
}

void BrevantForm::UpdateVolumeDisplay() {
    if (!__isVolumeChanged) return;
    __isVolumeChanged = false;
    // A block that is all below silence has a negative step, which shows as no breath.
    Bitmap* pBitmap = JLib::GetBitmapN(FormatName(L"volume_%d.png", std::max(__volumeStep, 0)));
    if (pBitmap != nullptr && __pLabelVolume != nullptr) __pLabelVolume->SetBackgroundBitmap(*pBitmap);
    JLib::SafeDelete(pBitmap);
    RequestRedrawOnTick();
}

void BrevantForm::ApplyFirstBlowHint() {
    int value = 0;
    JLib::ReadRegInt(SETTINGS_SECTION, SETTING_FIRST_BLOW, value, 0);
    if (value != 0 && __pLabelIconBlow != nullptr) __pLabelIconBlow->SetShowState(false);
    UpdateVolumeVisibility();
}

void BrevantForm::UpdateTone() {
    if (__pPitchPlayer == nullptr) return;
    int mask = 0;
    for (int i = 0; i < HOLE_COUNT; ++i) {
        if (__pHoles[i] != nullptr && __pHoles[i]->IsCovered()) mask |= 1 << i;
    }
    const Tone& tone = kFingeringTable[mask];

    const bool isSounding = JLib::__isAutoPlay ? tone.octave != OPEN_OCTAVE : __isBlowing;
    if (isSounding) {
        __pPitchPlayer->Play(tone.octave, tone.semitone);
    } else {
        __pPitchPlayer->Stop();
    }
}

void BrevantForm::ShowSplash() {
    Frame* pFrame = UiApp::GetInstance()->GetAppFrame();
    if (pFrame == nullptr) return;
    __pFormSplash = new FormSplash();
    __pFormSplash->Initialize(this);
    pFrame->AddControl(*__pFormSplash);
    pFrame->SetCurrentForm(*__pFormSplash);
    __pFormSplash->RequestRedraw(true);
}

void BrevantForm::RemoveSplash() {
    Frame* pFrame = UiApp::GetInstance()->GetAppFrame();
    if (pFrame == nullptr || __pFormSplash == nullptr) return;
    pFrame->SetCurrentForm(*this);
    pFrame->RequestRedraw(true);
    pFrame->RemoveControl(*__pFormSplash);
    __pFormSplash = nullptr;
}

void BrevantForm::InitMenuButtons() {
    __pButtonMenu = dynamic_cast<Button*>(SetupButton(IDC_BUTTON_MENU, ID_BUTTON_MENU));
    __pButtonHelp = dynamic_cast<Button*>(SetupButton(IDC_BUTTON_HELP, ID_BUTTON_HELP));
    __pButtonSetup = dynamic_cast<Button*>(SetupButton(IDC_BUTTON_SETUP, ID_BUTTON_SETUP));
    ShowMenuButtons(false);
}

void BrevantForm::ToggleMenu() {
    if (__menuFrameTarget < MENU_TARGET_OPENING_MIN) {
        __menuFrameTarget = MENU_TARGET_OPEN;
        __menuFrame = MENU_FRAME_FIRST;
        ShowMenuButtons(true);
    } else {
        __menuFrameTarget = MENU_TARGET_CLOSED;
        __menuFrame = MENU_FRAME_LAST;
        ShowMenuButtons(false);
    }
}

void BrevantForm::ShowMenuButtons(bool isShown) {
    if (__pButtonHelp != nullptr) __pButtonHelp->SetShowState(isShown);
    if (__pButtonSetup != nullptr) __pButtonSetup->SetShowState(isShown);
}

void BrevantForm::UpdateMenuAnimation() {
    if (__menuFrame == __menuFrameTarget) return;
    Bitmap* pNormal = JLib::GetBitmapN(FormatName(L"icon_memu_%d.png", __menuFrame));
    if (pNormal != nullptr && __pButtonMenu != nullptr) __pButtonMenu->SetNormalBackgroundBitmap(*pNormal);
    Bitmap* pPressed = JLib::GetBitmapN(FormatName(L"icon_memu_%dp.png", __menuFrame));
    if (pPressed != nullptr && __pButtonMenu != nullptr) __pButtonMenu->SetPressedBackgroundBitmap(*pPressed);
    JLib::SafeDelete(pNormal);
    JLib::SafeDelete(pPressed);

    __menuFrame += __menuFrame < __menuFrameTarget ? 1 : -1;
    if (__menuFrame == __menuFrameTarget) {
        if (__pendingMenuAction == MENU_ACTION_SETUP) {
            ShowSetup();
        } else if (__pendingMenuAction == MENU_ACTION_HELP) {
            ShowHelp();
        }
    }
    RequestRedrawOnTick();
}

void BrevantForm::ShowHelp() {
    JLib::SafeDestroy(__pPopupHelp);
    PopupHelp* pPopupHelp = new PopupHelp();
    pPopupHelp->Initialize(this);
    pPopupHelp->SetShowState(true);
    pPopupHelp->Show();
    __pPopupHelp = pPopupHelp;
}

void BrevantForm::ShowSetup() {
    FormSetup* pFormSetup = new FormSetup();
    pFormSetup->Initialize();
    __pFormSetup = pFormSetup;
    ShowChildForm(pFormSetup, this);
}

void BrevantForm::OnHelpClosed() {
    JLib::SafeDestroy(__pPopupHelp);
    __pPopupHelp = nullptr;
    RequestRedrawOnTick();
    __pendingMenuAction = MENU_ACTION_NONE;
    UpdateBlowDetection();
}

void BrevantForm::OnSetupClosed() {
    if (__pFormSetup != nullptr) {
        __pFormSetup->CloseForm();
        __pFormSetup = nullptr;
    }
    SetHoleColor(JLib::__colorForeground);
    JLib::WriteRegColor(SETTINGS_SECTION, SETTING_HOLE_COLOR, JLib::__colorForeground);
    SetBackColor(JLib::__colorBackground);
    JLib::WriteRegColor(SETTINGS_SECTION, SETTING_BACK_COLOR, JLib::__colorBackground);
    __pendingMenuAction = MENU_ACTION_NONE;
    JLib::WriteRegInt(SETTINGS_SECTION, SETTING_AUTO_PLAY, JLib::__isAutoPlay ? 1 : 0);
    UpdateBlowDetection();
    UpdateVolumeVisibility();
}
