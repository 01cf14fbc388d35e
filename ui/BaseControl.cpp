#include "ui/BaseControl.h"

#include "Tizen/Ui/Touch.h"
#include "shared/JLib.h"

using namespace Tizen::Base::Runtime;
using namespace Tizen::Graphics;
using namespace Tizen::Ui;

namespace {

const int TICK_MS = 30;

}  // namespace

BaseControl::BaseControl() : __pParentContainer(nullptr), __pCanvas(nullptr), __isRedraw(false), __timerInterval(0) {}

BaseControl::~BaseControl() {
    JLib::SafeDelete(__pCanvas);
}

bool BaseControl::Construct(const Rectangle& rect, Container* pParent) {
    __pParentContainer = pParent;
    return Construct(rect);
}

bool BaseControl::Construct(const Rectangle& rect) {
    Container::Construct();
    SetBounds(rect);
    __rectBounds = rect;
    return true;
}

result BaseControl::OnInitializing() {
    __timer.Construct(*this);
    __timerInterval = 0;
    __isRedraw = false;
    return E_SUCCESS;
}

result BaseControl::OnDraw() {
    if (__pCanvas == nullptr) __pCanvas = GetCanvasN();
    return E_SUCCESS;
}

void BaseControl::OnTouchDoublePressed(const Control&, const Point&, const TouchEventInfo&) {}

void BaseControl::OnTouchFocusIn(const Control&, const Point&, const TouchEventInfo&) {}

void BaseControl::OnTouchFocusOut(const Control&, const Point&, const TouchEventInfo&) {}

void BaseControl::OnTouchLongPressed(const Control&, const Point&, const TouchEventInfo&) {}

void BaseControl::OnTouchMoved(const Control&, const Point&, const TouchEventInfo&) {}

void BaseControl::OnTouchPressed(const Control&, const Point&, const TouchEventInfo&) {}

void BaseControl::OnTouchReleased(const Control&, const Point&, const TouchEventInfo&) {}

void BaseControl::OnTimerExpired(Timer& timer) {
    if (&timer != &__timer) return;
    if (__isRedraw) {
        __isRedraw = false;
        RequestRedraw(true);
    }
    __timer.Start(__timerInterval);
}

void BaseControl::EnableTouch(bool isMultipoint) {
    AddTouchEventListener(*this);
    if (isMultipoint) Touch().SetMultipointEnabled(*this, true);
}

void BaseControl::StartTimer() {
    __timer.Start(TICK_MS);
    __timerInterval = TICK_MS;
}

void BaseControl::RequestRedrawOnTick() {
    __isRedraw = true;
}
