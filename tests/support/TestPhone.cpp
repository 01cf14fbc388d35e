#include "support/TestPhone.h"

#include <stdexcept>
#include <utility>

#include "Tizen/App/UiApp.h"
#include "Tizen/Ui/Controls/Frame.h"
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

class AlteredBackend final : public host::Backend {
public:
    explicit AlteredBackend(const host::BackendOptions& options)
        : headless_(host::CreateHeadlessBackend(options)), alter_(std::move(next)) {}

    [[nodiscard]] host::BackendParts Parts() override {
        return alter_ ? alter_(headless_->Parts()) : headless_->Parts();
    }

    static inline TestPhone::Alteration next;  ///< for the next one to be created

private:
    std::unique_ptr<host::Backend> headless_;
    TestPhone::Alteration alter_;
};

std::unique_ptr<host::Backend> CreateAlteredBackend(const host::BackendOptions& options) {
    return std::make_unique<AlteredBackend>(options);
}

}  // namespace

TestPhone::TestPhone(host::Options options, const std::string& packageRoot, Alteration alter) {
    // The ocarina keeps the settings' path for the life of the process; a test's process has several phones.
    JLib::__strRegFilePath.Clear();
    options.rest = {"brevant"};
    // Attended: without a performance a test says when it ends.
    const host::BackendEntry entry{"test", host::Attendance::kAttended, host::MicrophoneSupport::kNone,
                                   host::IsHeadlessAvailable, CreateAlteredBackend};
    AlteredBackend::next = std::move(alter);
    phone_ = std::make_unique<host::Phone>(entry, host::BackendOptions{packageRoot, data_.Path()}, std::move(options));
    std::string problem;
    if (!phone_->Open(problem)) throw std::runtime_error(problem);
}

TestPhone::~TestPhone() = default;

void TestPhone::At(int ms, std::function<void()> action) {
    GetRuntime().GetLoop().StartTimer(ms * host::kMicrosecondsPerMillisecond, std::move(action));
}

void TestPhone::RunOcarina(int ms) {
    Run(OspMain, ms);
}

void TestPhone::RunEmpty(int ms) {
    Run([](int, char**) { return static_cast<int>(Tizen::App::UiApp::Execute(EmptyApp::CreateInstance, nullptr)); },
        ms);
}

void TestPhone::Run(host::EntryPoint entryPoint, int ms) {
    At(ms, [this] { phone_->RequestEnd(); });
    phone_->Run(entryPoint, [](int) {});
}
