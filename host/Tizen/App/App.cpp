#include "Tizen/App/App.h"

#include "Tizen/App/UiApp.h"
#include "runtime/Phone.h"

namespace Tizen {
namespace App {

using Tizen::Base::String;

App::~App() = default;

App* App::GetInstance() {
    return UiApp::GetInstance();
}

bool App::OnAppInitialized() {
    return true;
}

bool App::OnAppWillTerminate() {
    return true;
}

void App::OnLowMemory() {}

void App::OnBatteryLevelChanged(Tizen::System::BatteryLevel) {}

void App::OnUserEventReceivedN(long, Tizen::Base::Collection::IList*) {}

result App::Terminate() {
    host::Phone::Current().RequestEnd();
    return E_SUCCESS;
}

String App::GetAppDataPath() const {
    return String(host::Runtime::Current().GetStorage().DataRoot().c_str());
}

String App::GetAppRootPath() const {
    return String(host::Runtime::Current().GetStorage().PackageRoot().c_str());
}

AppResource* App::GetAppResource() const {
    return &resource_;
}

}  // namespace App
}  // namespace Tizen
