#include "play/JHole.h"

using namespace Tizen::Graphics;
using namespace Tizen::Ui;

namespace {

const float COVERED_SCALE = 1.3f;
// Placeholders until the form gives the hole its own.
const Rectangle INITIAL_HOLE(10, 10, 100, 100);
const Color INITIAL_HOLE_COLOR(0, 0, 255, 255);
const Color INITIAL_BACK_COLOR(64, 64, 64, 255);
const int NO_INDEX = -1;

}  // namespace

JHole::JHole()
    : __coveredScale(COVERED_SCALE),
      __rectHole(INITIAL_HOLE),
      __colorHole(INITIAL_HOLE_COLOR),
      __colorBack(INITIAL_BACK_COLOR),
      __isCovered(false),
      __holeIndex(NO_INDEX),
      __pListener(nullptr) {}

JHole::~JHole() = default;

result JHole::OnInitializing() {
    BaseControl::OnInitializing();
    StartTimer();
    EnableTouch(true);
    return E_SUCCESS;
}

result JHole::OnDraw() {
    BaseControl::OnDraw();
    if (__pCanvas == nullptr) return E_SUCCESS;
    __pCanvas->FillRectangle(__colorBack, Rectangle(0, 0, __rectBounds.width, __rectBounds.height));
    __pCanvas->FillEllipse(__colorHole, GetHoleEllipseBounds());
    return E_SUCCESS;
}

void JHole::OnTouchDoublePressed(const Control&, const Point&, const TouchEventInfo&) {}

void JHole::OnTouchFocusIn(const Control&, const Point&, const TouchEventInfo&) {}

void JHole::OnTouchFocusOut(const Control&, const Point&, const TouchEventInfo&) {}

void JHole::OnTouchLongPressed(const Control&, const Point&, const TouchEventInfo&) {}

void JHole::OnTouchMoved(const Control&, const Point&, const TouchEventInfo&) {}

void JHole::OnTouchPressed(const Control&, const Point&, const TouchEventInfo&) {
    if (__isCovered) return;
    __isCovered = true;
    RequestRedrawOnTick();
    if (__pListener != nullptr) __pListener->OnHolePressed(__holeIndex);
}

void JHole::OnTouchReleased(const Control&, const Point&, const TouchEventInfo&) {
    if (!__isCovered) return;
    __isCovered = false;
    RequestRedrawOnTick();
    if (__pListener != nullptr) __pListener->OnHoleReleased(__holeIndex);
}

void JHole::SetHoleBounds(const Rectangle& rect) {
    __rectHole = rect;
}

void JHole::SetHoleColor(const Color& color) {
    __colorHole = color;
    RequestRedrawOnTick();
}

void JHole::SetBackColor(const Color& color) {
    __colorBack = color;
    RequestRedrawOnTick();
}

void JHole::SetHoleIndex(int holeIndex) {
    __holeIndex = holeIndex;
}

void JHole::SetHoleListener(JHoleListener* pListener) {
    __pListener = pListener;
}

bool JHole::IsCovered() const {
    return __isCovered;
}

Rectangle JHole::GetHoleEllipseBounds() const {
    if (!__isCovered) return __rectHole;
    const int width = static_cast<int>(static_cast<float>(__rectHole.width) * __coveredScale);
    const int height = static_cast<int>(static_cast<float>(__rectHole.height) * __coveredScale);
    const int centerX = __rectHole.x + __rectHole.width / 2;
    const int centerY = __rectHole.y + __rectHole.height / 2;
    return Rectangle(centerX - width / 2, centerY - height / 2, width, height);
}
