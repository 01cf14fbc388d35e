#pragma once

#include "Tizen/Base/Collection/IList.h"
#include "Tizen/Base/Runtime/Timer.h"
#include "Tizen/Base/Types.h"
#include "Tizen/Graphics/Color.h"
#include "Tizen/Ui/Control.h"
#include "Tizen/Ui/Controls/Button.h"
#include "Tizen/Ui/Controls/Label.h"
#include "play/JHole.h"
#include "play/JHoleListener.h"
#include "sound/MikeEventListener.h"
#include "sound/MikeInputCheck.h"
#include "sound/PitchPlayer.h"
#include "ui/BaseForm.h"

class FormSetup;
class FormSplash;
class PopupHelp;

/// The play screen: the four holes and the breath choose the tone that sounds. It also opens the splash, the help and
/// the setup screens, and it is the one that stores the settings. UI thread only.
class BrevantForm : public BaseForm, public JHoleListener, public MikeEventListener {
public:
    BrevantForm();
    ~BrevantForm() override;

    /// Builds the form from its layout. Always true.
    bool Initialize();

    result OnInitializing() override;
    result OnTerminating() override;
    void OnUserEventReceivedN(long requestId, Tizen::Base::Collection::IList* pArgs) override;
    void OnActionPerformed(const Tizen::Ui::Control& source, int actionId) override;
    void OnTimerExpired(Tizen::Base::Runtime::Timer& timer) override;
    void OnBackRequested() override;

    void OnHolePressed(int holeIndex) override;
    void OnHoleReleased(int holeIndex) override;
    void OnMikeStateChanged() override;
    void OnMikeLevelChanged(unsigned char peak, float crossingRate) override;

    // News of the application and the phone's screen, passed on by the frame.
    void OnForeground();
    void OnBackground();
    void OnScreenOn();
    void OnScreenOff();

private:
    static const int ID_BUTTON_MENU = 101;
    static const int ID_BUTTON_HELP = 102;
    static const int ID_BUTTON_SETUP = 103;

    static const int MENU_ACTION_NONE = 0;
    static const int MENU_ACTION_HELP = 1;
    static const int MENU_ACTION_SETUP = 2;

    static const int HOLE_COUNT = 4;

    void LoadSettings();
    void CreateHoles();
    void SetBackColor(const Tizen::Graphics::Color& color);
    void SetHoleColor(const Tizen::Graphics::Color& color);

    /// Runs the microphone exactly while breath counts: without automatic play and without a menu action under way.
    void UpdateBlowDetection();
    void StartMike();
    void StopMike();
    void UpdateVolumeVisibility();
    void UpdateVolumeDisplay();
    void ApplyFirstBlowHint();
    /// The one place that starts and stops tones.
    void UpdateTone();

    void ShowSplash();
    void RemoveSplash();

    void InitMenuButtons();
    void ToggleMenu();
    void ShowMenuButtons(bool isShown);
    void UpdateMenuAnimation();
    void ShowHelp();
    void ShowSetup();
    void OnHelpClosed();
    void OnSetupClosed();

    Tizen::Ui::Controls::Button* __pButtonMenu;
    Tizen::Ui::Controls::Button* __pButtonHelp;
    Tizen::Ui::Controls::Button* __pButtonSetup;
    Tizen::Ui::Control* __pLabelIconVolume;
    Tizen::Ui::Controls::Label* __pLabelVolume;
    Tizen::Ui::Control* __pLabelIconBlow;
    float __blowLevel;
    bool __isBlowing;
    int __volumeStep;
    bool __isVolumeChanged;
    int __menuFrameTarget;
    int __menuFrame;
    JHole* __pHoles[HOLE_COUNT];
    PitchPlayer* __pPitchPlayer;
    MikeInputCheck* __pMikeInputCheck;
    PopupHelp* __pPopupHelp;
    FormSetup* __pFormSetup;
    int __pendingMenuAction;
    Tizen::Base::Runtime::Timer* __pSplashTimer;
    FormSplash* __pFormSplash;
};
