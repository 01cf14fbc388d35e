#pragma once

#include "Tizen/App/AppRegistry.h"
#include "Tizen/App/UiApp.h"
#include "Tizen/System/BatteryLevel.h"
#include "Tizen/System/IScreenEventListener.h"

class BrevantFrame;

/// The application: makes the frame and passes on to it what becomes of the application and the screen. UI thread only;
/// it holds no device, sound or setting itself.
class BrevantApp : public Tizen::App::UiApp, public Tizen::System::IScreenEventListener {
public:
    BrevantApp();
    ~BrevantApp() override;

    /// The caller owns the application.
    static Tizen::App::UiApp* CreateInstance();

    bool OnAppInitializing(Tizen::App::AppRegistry& appRegistry) override;
    bool OnAppInitialized() override;
    bool OnAppWillTerminate() override;
    bool OnAppTerminating(Tizen::App::AppRegistry& appRegistry, bool forcedTermination) override;
    void OnLowMemory() override;
    void OnBatteryLevelChanged(Tizen::System::BatteryLevel batteryLevel) override;
    void OnForeground() override;
    void OnBackground() override;
    void OnScreenOn() override;
    void OnScreenOff() override;

private:
    BrevantFrame* __pFrame;
};
