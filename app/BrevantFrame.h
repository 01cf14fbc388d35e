#pragma once

#include "Tizen/Base/Types.h"
#include "Tizen/Ui/Controls/Frame.h"

class BrevantForm;

/// The application's one frame. It makes the play form, and passes on to it what the application hears. UI thread only.
class BrevantFrame : public Tizen::Ui::Controls::Frame {
public:
    BrevantFrame();
    ~BrevantFrame() override;

    result OnInitializing() override;
    result OnTerminating() override;

    void OnForeground();
    void OnBackground();
    void OnScreenOn();
    void OnScreenOff();

private:
    BrevantForm* __pFormMain;
};
