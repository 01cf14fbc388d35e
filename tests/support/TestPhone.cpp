#include "support/TestPhone.h"

#include <array>
#include <stdexcept>
#include <utility>

#include "Tizen/App/UiApp.h"
#include "Tizen/Ui/Controls/Frame.h"
#include "backend/headless/HeadlessBackend.h"
#include "shared/JLib.h"

extern "C" int OspMain(int argc, char* argv[]);

namespace {

// The least application: a frame without forms.
class EmptyApp final : public Tizen::App::UiApp {
public:
    static Tizen::App::UiApp* CreateInstance() { return new EmptyApp; }

    bool OnAppInitializing(Tizen::App::AppRegistry&) override { return true; }
    bool OnAppInitialized() override {
        auto* pFrame = new Tizen::Ui::Controls::Frame;
        pFrame->Construct();
        AddFrame(*pFrame);
        return true;
    }
    bool OnAppTerminating(Tizen::App::AppRegistry&, bool) override { return true; }
};

}  // namespace

TestPhone::TestPhone(host::RuntimeOptions options, const std::string& packageRoot) {
    options.isMicrophoneSimulated = true;
    // The ocarina keeps the settings' path for the life of the process; a test's process has several phones.
    JLib::__strRegFilePath.Clear();
    backend_ = host::CreateHeadlessBackend({packageRoot, data_.Path()});
    runtime_ = std::make_unique<host::Runtime>(*backend_, std::move(options));
    std::string problem;
    if (!runtime_->Open(problem)) throw std::runtime_error(problem);
}

TestPhone::~TestPhone() = default;

void TestPhone::At(int ms, std::function<void()> action) {
    runtime_->GetLoop().StartTimer(ms * host::kMicrosecondsPerMillisecond, std::move(action));
}

void TestPhone::RunOcarina(int ms) {
    At(ms, [this] { runtime_->RequestEnd(); });
    std::array<char, 8> name{"brevant"};
    std::array<char*, 2> arguments{name.data(), nullptr};
    OspMain(1, arguments.data());
}

void TestPhone::RunEmpty(int ms) {
    At(ms, [this] { runtime_->RequestEnd(); });
    Tizen::App::UiApp::Execute(EmptyApp::CreateInstance, nullptr);
}
