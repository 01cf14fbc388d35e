#pragma once

#include "Tizen/Base/Runtime/ITimerEventListener.h"
#include "Tizen/Base/Runtime/Timer.h"
#include "Tizen/Base/String.h"
#include "Tizen/Base/Types.h"
#include "Tizen/Graphics/Canvas.h"
#include "Tizen/Ui/Control.h"
#include "Tizen/Ui/Controls/Popup.h"
#include "Tizen/Ui/IActionEventListener.h"
#include "Tizen/Ui/IKeyEventListener.h"

/// The base of the popups: reporting to the owner, the Back key as one operation, buttons by name and the redraw tick.
/// A popup never closes itself; its owner does when it has reported. UI thread only; it draws nothing itself.
class BasePopup : public Tizen::Ui::Controls::Popup,
                  public Tizen::Ui::IActionEventListener,
                  public Tizen::Base::Runtime::ITimerEventListener,
                  public Tizen::Ui::IKeyEventListener {
public:
    BasePopup();
    ~BasePopup() override;

    result OnInitializing() override;
    result OnDraw() override;

    void OnActionPerformed(const Tizen::Ui::Control& source, int actionId) override;
    void OnTimerExpired(Tizen::Base::Runtime::Timer& timer) override;
    void OnKeyPressed(const Tizen::Ui::Control& source, int keyCode) override;
    void OnKeyLongPressed(const Tizen::Ui::Control& source, int keyCode) override;
    void OnKeyReleased(const Tizen::Ui::Control& source, int keyCode) override;

    /// The Back key was released on this popup.
    virtual void OnPopupBackRequested() = 0;

    /// Not owned; must outlive the popup.
    void SetOwner(Tizen::Ui::Control* pOwner);
    /// Without an owner the report is dropped.
    void SendUserEventToOwner(long requestId);
    /// Gives the button of that name, a direct child, its action id and listens to it. Null when there is no such
    /// child.
    Tizen::Ui::Control* SetupButton(const Tizen::Base::String& controlName, int actionId);
    /// Starts the tick, which then goes on for the popup's life.
    void StartTimer(int intervalMs);
    /// The popup is redrawn once at the next tick, however often this is called before.
    void RequestRedrawOnTick();

protected:
    Tizen::Ui::Control* __pOwner;
    Tizen::Graphics::Canvas* __pCanvas;
    Tizen::Base::Runtime::Timer __timer;
    bool __isRedraw;
    int __timerInterval;
};
