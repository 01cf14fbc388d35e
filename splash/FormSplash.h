#pragma once

#include "Tizen/Base/Runtime/ITimerEventListener.h"
#include "Tizen/Base/Runtime/Timer.h"
#include "Tizen/Base/Types.h"
#include "Tizen/Graphics/Bitmap.h"
#include "Tizen/Ui/Control.h"
#include "Tizen/Ui/Controls/Form.h"
#include "Tizen/Ui/Controls/IFormBackEventListener.h"
#include "Tizen/Ui/IActionEventListener.h"

/// The intro pictures at the start, each held and then faded to black. Its owner is told when they are over or skipped,
/// and removes the form. UI thread only.
class FormSplash : public Tizen::Ui::Controls::Form,
                   public Tizen::Ui::IActionEventListener,
                   public Tizen::Base::Runtime::ITimerEventListener,
                   public Tizen::Ui::Controls::IFormBackEventListener {
public:
    FormSplash();
    ~FormSplash() override;

    /// `pOwner` is told REQUEST_SPLASH_DONE, possibly more than once; null for the form's parent. Always true.
    bool Initialize(Tizen::Ui::Control* pOwner);
    /// `index` counts from 0. Requests no redraw. Before the form is initialised the image is shown without its timing.
    void ShowIntroImage(int index);

    result OnInitializing() override;
    result OnTerminating() override;
    result OnDraw() override;

    void OnActionPerformed(const Tizen::Ui::Control& source, int actionId) override;
    void OnTimerExpired(Tizen::Base::Runtime::Timer& timer) override;
    void OnFormBackRequested(Tizen::Ui::Controls::Form& source) override;

private:
    void SendDone();

    Tizen::Ui::Control* __pOwnerForm;
    int __imageIndex;
    Tizen::Graphics::Bitmap* __pBitmapIntro;
    Tizen::Base::Runtime::Timer* __pTimerFadeIn;
    Tizen::Base::Runtime::Timer* __pTimerHold;
    Tizen::Base::Runtime::Timer* __pTimerFadeOut;
    bool __isFadeIn;
    int __shadeAlpha;
};
