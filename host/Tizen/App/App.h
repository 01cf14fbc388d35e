#pragma once

#include "Tizen/App/AppRegistry.h"
#include "Tizen/App/AppResource.h"
#include "Tizen/Base/Collection/IList.h"
#include "Tizen/Base/String.h"
#include "Tizen/Base/Types.h"
#include "Tizen/System/BatteryLevel.h"

namespace Tizen {
namespace App {

/// The lifecycle of an application without its user interface. UI thread only.
class App {
public:
    App() = default;
    App(const App&) = delete;
    App& operator=(const App&) = delete;
    virtual ~App();

    /// The running application, or null.
    static App* GetInstance();

    virtual bool OnAppInitializing(AppRegistry& appRegistry) = 0;
    virtual bool OnAppInitialized();
    virtual bool OnAppWillTerminate();
    virtual bool OnAppTerminating(AppRegistry& appRegistry, bool forcedTermination) = 0;
    virtual void OnLowMemory();
    virtual void OnBatteryLevelChanged(Tizen::System::BatteryLevel batteryLevel);
    virtual void OnUserEventReceivedN(long requestId, Tizen::Base::Collection::IList* pArgs);

    /// Ends the application once the handler that calls this has returned; repeated calls change nothing.
    result Terminate();

    /// The folder of the user's data, with a separator at its end.
    Tizen::Base::String GetAppDataPath() const;
    /// The folder of the package, with a separator at its end.
    Tizen::Base::String GetAppRootPath() const;
    /// The package's pictures and texts; the application owns the object.
    AppResource* GetAppResource() const;

private:
    mutable AppResource resource_;
};

}  // namespace App
}  // namespace Tizen
