#include "Tizen/App/UiApp.h"

#include <memory>
#include <utility>

#include "Tizen/System/IScreenEventListener.h"
#include "runtime/Phone.h"

namespace Tizen {
namespace App {

using Tizen::Ui::Controls::Frame;

namespace {

UiApp* pInstance = nullptr;

}  // namespace

// Stands between the phone and the application: passes its news on and owns the application until it has ended.
class UiApp::Runner final : public host::Application {
public:
    explicit Runner(UiApp* pApp)
        : app_(pApp), pScreenListener_(dynamic_cast<Tizen::System::IScreenEventListener*>(pApp)) {}

    bool Start() { return app_->OnAppInitializing(registry_) && app_->OnAppInitialized(); }

    void OnForeground() override { app_->OnForeground(); }
    void OnBackground() override { app_->OnBackground(); }
    void OnScreenOn() override {
        if (pScreenListener_ != nullptr) pScreenListener_->OnScreenOn();
    }
    void OnScreenOff() override {
        if (pScreenListener_ != nullptr) pScreenListener_->OnScreenOff();
    }

    void OnEnd() override {
        app_->OnAppWillTerminate();
        app_->OnAppTerminating(registry_, false);
        app_->DestroyFrame();
        app_.reset();
    }

private:
    AppRegistry registry_;
    std::unique_ptr<UiApp> app_;
    Tizen::System::IScreenEventListener* pScreenListener_;
};

UiApp::UiApp() {
    pInstance = this;
}

UiApp::~UiApp() {
    DestroyFrame();
    if (pInstance == this) pInstance = nullptr;
}

UiApp* UiApp::GetInstance() {
    return pInstance;
}

result UiApp::Execute(UiAppInstanceFactory pFactory, const Tizen::Base::Collection::IList*) {
    if (pFactory == nullptr) return E_INVALID_ARG;
    UiApp* pApp = pFactory();
    if (pApp == nullptr) return E_FAILURE;
    auto pRunner = std::make_unique<Runner>(pApp);
    if (!pRunner->Start()) return E_FAILURE;
    host::Runtime::Current().GetTrace().Add("app", "initialized");
    host::Phone::Current().Start(std::move(pRunner));
    return E_SUCCESS;
}

result UiApp::AddFrame(const Frame& frame) {
    if (pFrame_ != nullptr) return E_OBJ_ALREADY_EXIST;
    // The framework's signature promises no change, yet its contract is that the application owns the frame from here
    // on.
    pFrame_ = const_cast<Frame*>(&frame);
    return pFrame_->EnterApplication();
}

void UiApp::OnForeground() {}

void UiApp::OnBackground() {}

void UiApp::DestroyFrame() {
    if (pFrame_ == nullptr) return;
    pFrame_->Destroy();
    pFrame_ = nullptr;
}

}  // namespace App
}  // namespace Tizen
