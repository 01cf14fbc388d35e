#pragma once

#include "Tizen/Base/Types.h"
#include "Tizen/Graphics/Color.h"
#include "Tizen/Graphics/Rectangle.h"
#include "play/JHoleListener.h"
#include "ui/BaseControl.h"

/// A finger hole: its whole area is for the finger, the ellipse on it is what the player sees, and it grows while the
/// hole is covered. UI thread only; it knows nothing of notes, sound or breath.
class JHole : public BaseControl {
public:
    JHole();
    ~JHole() override;

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

    /// Where the uncovered ellipse lies, in the hole's own coordinates. Requests no redraw.
    void SetHoleBounds(const Tizen::Graphics::Rectangle& rect);
    void SetHoleColor(const Tizen::Graphics::Color& color);
    void SetBackColor(const Tizen::Graphics::Color& color);
    /// What the listener is told to tell the holes apart.
    void SetHoleIndex(int holeIndex);
    /// Not owned; null for none.
    void SetHoleListener(JHoleListener* pListener);
    bool IsCovered() const;
    /// Where the ellipse lies now; grown, it may reach beyond the control.
    Tizen::Graphics::Rectangle GetHoleEllipseBounds() const;

private:
    float __coveredScale;
    Tizen::Graphics::Rectangle __rectHole;
    Tizen::Graphics::Color __colorHole;
    Tizen::Graphics::Color __colorBack;
    bool __isCovered;
    int __holeIndex;
    JHoleListener* __pListener;
};
