#include "splash/FormSplash.h"

#include "Tizen/Base/String.h"
#include "Tizen/Graphics/Canvas.h"
#include "Tizen/Graphics/Color.h"
#include "Tizen/Graphics/Rectangle.h"
#include "shared/JLib.h"
#include "shared/RequestIds.h"

using namespace Tizen::Base;
using namespace Tizen::Base::Runtime;
using namespace Tizen::Graphics;
using namespace Tizen::Ui;
using namespace Tizen::Ui::Controls;

namespace {

const int INTRO_IMAGE_COUNT = 1;
const int MAX_NAME_LENGTH = 50;
const int HOLD_MS = 2000;
const int FADE_STEP_MS = 30;
const int FADE_STEP = 16;
const int SHADE_NONE = 0;
const int SHADE_FULL = 255;
const int ID_SKIP = 101;

// Without effect before the form is initialised, when there are no timers yet.
void StartTimer(Timer* pTimer, int ms) {
    if (pTimer != nullptr) pTimer->Start(ms);
}

Timer* CreateTimer(ITimerEventListener& listener) {
    Timer* pTimer = new Timer();
    pTimer->Construct(listener);
    return pTimer;
}

void ReleaseTimer(Timer* pTimer) {
    if (pTimer == nullptr) return;
    pTimer->Cancel();
    delete pTimer;
}

}  // namespace

FormSplash::FormSplash()
    : __pOwnerForm(nullptr),
      __imageIndex(0),
      __pBitmapIntro(nullptr),
      __pTimerFadeIn(nullptr),
      __pTimerHold(nullptr),
      __pTimerFadeOut(nullptr),
      __isFadeIn(true),
      __shadeAlpha(SHADE_FULL) {}

FormSplash::~FormSplash() {
    ReleaseTimer(__pTimerFadeIn);
    ReleaseTimer(__pTimerHold);
    ReleaseTimer(__pTimerFadeOut);
    JLib::SafeDelete(__pBitmapIntro);
}

bool FormSplash::Initialize(Control* pOwner) {
    __pOwnerForm = pOwner != nullptr ? pOwner : GetParent();
    Construct(L"IDF_FORM_SPLASH");
    return true;
}

void FormSplash::ShowIntroImage(int index) {
    __shadeAlpha = SHADE_FULL;
    String name;
    name.Format(MAX_NAME_LENGTH, L"intro%02d.png", index + 1);
    JLib::SafeDelete(__pBitmapIntro);
    __pBitmapIntro = JLib::GetBitmapN(name);
    if (__isFadeIn) {
        __shadeAlpha = SHADE_FULL;
        StartTimer(__pTimerFadeIn, FADE_STEP_MS);
    } else {
        __shadeAlpha = SHADE_NONE;
        StartTimer(__pTimerHold, HOLD_MS);
    }
}

result FormSplash::OnInitializing() {
    SetFormBackEventListener(this);
    __isFadeIn = false;
    __pTimerFadeIn = CreateTimer(*this);
    __pTimerHold = CreateTimer(*this);
    __pTimerFadeOut = CreateTimer(*this);
    ShowIntroImage(__imageIndex);
    return E_SUCCESS;
}

result FormSplash::OnTerminating() {
    return E_SUCCESS;
}

result FormSplash::OnDraw() {
    Canvas* pCanvas = GetCanvasN();
    if (pCanvas == nullptr) return E_SUCCESS;
    const Rectangle area = GetClientAreaBounds();
    if (__pBitmapIntro != nullptr) pCanvas->DrawBitmap(area, *__pBitmapIntro);
    pCanvas->FillRectangle(Color(0, 0, 0, static_cast<unsigned char>(__shadeAlpha)), area);
    delete pCanvas;
    return E_SUCCESS;
}

void FormSplash::OnActionPerformed(const Control&, int actionId) {
    if (actionId == ID_SKIP) SendDone();
}

void FormSplash::OnTimerExpired(Timer& timer) {
    if (&timer == __pTimerFadeIn) {
        __shadeAlpha -= FADE_STEP;
        if (__shadeAlpha < SHADE_NONE) {
            __shadeAlpha = SHADE_NONE;
            StartTimer(__pTimerHold, HOLD_MS);
        } else {
            StartTimer(__pTimerFadeIn, FADE_STEP_MS);
        }
        RequestRedraw(true);
    } else if (&timer == __pTimerHold) {
        StartTimer(__pTimerFadeOut, FADE_STEP_MS);
    } else if (&timer == __pTimerFadeOut) {
        __shadeAlpha += FADE_STEP;
        if (__shadeAlpha <= SHADE_FULL) {
            StartTimer(__pTimerFadeOut, FADE_STEP_MS);
            RequestRedraw(true);
            return;
        }
        __shadeAlpha = SHADE_FULL;
        ++__imageIndex;
        if (__imageIndex < INTRO_IMAGE_COUNT) {
            ShowIntroImage(__imageIndex);
        } else {
            SendDone();
        }
    }
}

void FormSplash::OnFormBackRequested(Form&) {
    SendDone();
}

void FormSplash::SendDone() {
    if (__pOwnerForm != nullptr) __pOwnerForm->SendUserEvent(REQUEST_SPLASH_DONE, nullptr);
}
