#pragma once

#include "Tizen/Base/Runtime/ITimerEventListener.h"
#include "Tizen/Base/Runtime/Timer.h"
#include "Tizen/Base/Types.h"
#include "Tizen/Graphics/Canvas.h"
#include "Tizen/Graphics/Rectangle.h"
#include "Tizen/Ui/Container.h"
#include "Tizen/Ui/ITouchEventListener.h"

/// The base of controls that draw themselves: fixed bounds, a canvas that is kept, touches, and a tick that turns any
/// number of redraw requests into one. UI thread only; it draws nothing itself.
class BaseControl : public Tizen::Ui::Container,
                    public Tizen::Ui::ITouchEventListener,
                    public Tizen::Base::Runtime::ITimerEventListener {
public:
    BaseControl();
    ~BaseControl() override;

    /// The caller adds the control to `pParent` afterwards, which initialises it. Always true.
    bool Construct(const Tizen::Graphics::Rectangle& rect, Tizen::Ui::Container* pParent);
    bool Construct(const Tizen::Graphics::Rectangle& rect);

    result OnInitializing() override;
    result OnDraw() override;

    void OnTouchDoublePressed(const Tizen::Ui::Control& source, const Tizen::Graphics::Point& currentPosition,
                              const Tizen::Ui::TouchEventInfo& touchInfo) override;
    void OnTouchFocusIn(const Tizen::Ui::Control& source, const Tizen::Graphics::Point& currentPosition,
                        const Tizen::Ui::TouchEventInfo& touchInfo) override;
    void OnTouchFocusOut(const Tizen::Ui::Control& source, const Tizen::Graphics::Point& currentPosition,
                         const Tizen::Ui::TouchEventInfo& touchInfo) override;
    void OnTouchLongPressed(const Tizen::Ui::Control& source, const Tizen::Graphics::Point& currentPosition,
                            const Tizen::Ui::TouchEventInfo& touchInfo) override;
    void OnTouchMoved(const Tizen::Ui::Control& source, const Tizen::Graphics::Point& currentPosition,
                      const Tizen::Ui::TouchEventInfo& touchInfo) override;
    void OnTouchPressed(const Tizen::Ui::Control& source, const Tizen::Graphics::Point& currentPosition,
                        const Tizen::Ui::TouchEventInfo& touchInfo) override;
    void OnTouchReleased(const Tizen::Ui::Control& source, const Tizen::Graphics::Point& currentPosition,
                         const Tizen::Ui::TouchEventInfo& touchInfo) override;
    void OnTimerExpired(Tizen::Base::Runtime::Timer& timer) override;

    /// Listens to its own touches; with `isMultipoint`, to each finger's.
    void EnableTouch(bool isMultipoint);
    /// Starts the tick, which then goes on for the control's life.
    void StartTimer();
    /// The control is redrawn once at the next tick, however often this is called before.
    void RequestRedrawOnTick();

protected:
    Tizen::Ui::Container* __pParentContainer;
    Tizen::Graphics::Rectangle __rectBounds;
    Tizen::Graphics::Canvas* __pCanvas;
    Tizen::Base::Runtime::Timer __timer;
    bool __isRedraw;
    int __timerInterval;
};
