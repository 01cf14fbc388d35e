#pragma once

#include "Tizen/Base/Runtime/ITimerEventListener.h"
#include "Tizen/Base/Runtime/Timer.h"
#include "Tizen/Base/String.h"
#include "Tizen/Base/Types.h"
#include "Tizen/Graphics/Canvas.h"
#include "Tizen/Media/IPlayerEventListener.h"
#include "Tizen/Ui/Animations/IControlAnimatorDetailedEventListener.h"
#include "Tizen/Ui/Controls/Form.h"
#include "Tizen/Ui/Controls/Frame.h"
#include "Tizen/Ui/IActionEventListener.h"
#include "Tizen/Ui/IKeyEventListener.h"
#include "Tizen/Ui/ITouchEventListener.h"

/// The base of the full-screen forms: the redraw tick, the Back key as one operation, buttons by name, and the way to a
/// child form and back. UI thread only; it draws nothing itself.
class BaseForm : public Tizen::Ui::Controls::Form,
                 public Tizen::Ui::IActionEventListener,
                 public Tizen::Base::Runtime::ITimerEventListener,
                 public Tizen::Ui::Animations::IControlAnimatorDetailedEventListener,
                 public Tizen::Ui::ITouchEventListener,
                 public Tizen::Media::IPlayerEventListener,
                 public Tizen::Ui::IKeyEventListener {
public:
    BaseForm();
    ~BaseForm() override;

    result OnInitializing() override;
    result OnTerminating() override;
    result OnDraw() override;

    void OnActionPerformed(const Tizen::Ui::Control& source, int actionId) override;
    /// The redraw tick. A form with timers of its own passes every expiry on to this one.
    void OnTimerExpired(Tizen::Base::Runtime::Timer& timer) override;

    void OnControlAnimationStarted(const Tizen::Ui::Control& source) override;
    void OnControlAnimationRepeated(const Tizen::Ui::Control& source, long currentRepeatCount) override;
    void OnControlAnimationFinished(const Tizen::Ui::Control& source) override;
    void OnControlAnimationStopped(const Tizen::Ui::Control& source) override;

    void OnTouchPressed(const Tizen::Ui::Control& source, const Tizen::Graphics::Point& currentPosition,
                        const Tizen::Ui::TouchEventInfo& touchInfo) override;
    void OnTouchLongPressed(const Tizen::Ui::Control& source, const Tizen::Graphics::Point& currentPosition,
                            const Tizen::Ui::TouchEventInfo& touchInfo) override;
    void OnTouchReleased(const Tizen::Ui::Control& source, const Tizen::Graphics::Point& currentPosition,
                         const Tizen::Ui::TouchEventInfo& touchInfo) override;
    void OnTouchMoved(const Tizen::Ui::Control& source, const Tizen::Graphics::Point& currentPosition,
                      const Tizen::Ui::TouchEventInfo& touchInfo) override;
    void OnTouchDoublePressed(const Tizen::Ui::Control& source, const Tizen::Graphics::Point& currentPosition,
                              const Tizen::Ui::TouchEventInfo& touchInfo) override;
    void OnTouchFocusIn(const Tizen::Ui::Control& source, const Tizen::Graphics::Point& currentPosition,
                        const Tizen::Ui::TouchEventInfo& touchInfo) override;
    void OnTouchFocusOut(const Tizen::Ui::Control& source, const Tizen::Graphics::Point& currentPosition,
                         const Tizen::Ui::TouchEventInfo& touchInfo) override;

    void OnPlayerOpened(result r) override;
    void OnPlayerEndOfClip() override;
    void OnPlayerSeekCompleted(result r) override;
    void OnPlayerBuffering(int percent) override;
    void OnPlayerErrorOccurred(Tizen::Media::PlayerErrorReason reason) override;
    void OnPlayerInterrupted() override;
    void OnPlayerReleased() override;

    void OnKeyPressed(const Tizen::Ui::Control& source, int keyCode) override;
    void OnKeyLongPressed(const Tizen::Ui::Control& source, int keyCode) override;
    void OnKeyReleased(const Tizen::Ui::Control& source, int keyCode) override;

    /// The Back key was released on this form.
    virtual void OnBackRequested() = 0;

    /// Gives the button of that name, a direct child, its action id and listens to it. Null when there is no such
    /// child.
    Tizen::Ui::Control* SetupButton(const Tizen::Base::String& controlName, int actionId);
    /// Starts the tick, which then goes on for the form's life.
    void StartTimer();
    /// The form is redrawn once at the next tick, however often this is called before.
    void RequestRedrawOnTick();
    /// Shows `pForm`, which the frame then owns, over this one; it reports to `pOwner`.
    void ShowChildForm(BaseForm* pForm, BaseForm* pOwner);
    /// Takes the current form from the frame and so destroys it: called on that form, this is the last call it gets.
    void CloseForm();
    void TerminateApp();

protected:
    BaseForm* __pOwner;
    bool __isBackRequested;
    Tizen::Graphics::Canvas* __pCanvas;
    Tizen::Ui::Controls::Frame* __pFrame;
    Tizen::Base::Runtime::Timer __timer;
    bool __isRedraw;
    int __timerInterval;
};
