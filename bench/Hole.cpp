// One hole of the play screen redrawn and on the screen, with the desktop back end: the ocarina's own hole takes
// another colour, draws itself, is painted on its surface, composed under the picture that lies on it, and its part of
// the window is updated, which waits until the X server has it.

#include <array>
#include <stdexcept>

#include "Measure.h"
#include "Tizen/App/UiApp.h"
#include "Tizen/Ui/Controls/Form.h"
#include "Tizen/Ui/Controls/Frame.h"
#include "backend/desktop/DesktopBackend.h"
#include "play/JHole.h"
#include "runtime/Phone.h"
#include "runtime/screen/Screen.h"
#include "runtime/screen/composing/Compositor.h"
#include "shared/ResourceIds.h"
#include "support/TemporaryFolder.h"

extern "C" int OspMain(int argc, char* argv[]);

namespace {

constexpr host::Microseconds kPlayScreenShown = 4 * host::kMicrosecondsPerSecond;

JHole& FirstHole() {
    Tizen::Ui::Controls::Form* pForm = Tizen::App::UiApp::GetInstance()->GetAppFrame()->GetCurrentForm();
    auto* pPanel = dynamic_cast<Tizen::Ui::Container*>(pForm->GetControl(IDC_PANEL_HOLE, true));
    for (int i = 0; pPanel != nullptr && i < pPanel->GetControlCount(); ++i) {
        if (auto* pHole = dynamic_cast<JHole*>(pPanel->GetControl(i))) return *pHole;
    }
    throw std::runtime_error("the play screen has no hole");
}

void RedrawHole(benchmark::State& state) {
    const TemporaryFolder data;
    const host::BackendEntry entry{"bench", host::Attendance::kAttended, host::MicrophoneSupport::kNone,
                                   host::IsDesktopAvailable, host::CreateDesktopBackend};
    host::Options options;
    options.rest = {"brevant"};
    host::Phone phone(entry, {BREVANT_PACKAGE, data.Path()}, options);
    host::Runtime& runtime = phone.GetRuntime();
    std::string problem;
    if (!phone.Open(problem)) return state.SkipWithError(problem.c_str());

    runtime.GetLoop().StartTimer(kPlayScreenShown, [&] {
        const std::array<Tizen::Graphics::Color, 2> colors{Tizen::Graphics::Color(255, 194, 48, 255),
                                                           Tizen::Graphics::Color(58, 34, 40, 255)};
        JHole& hole = FirstHole();
        host::Screen& screen = runtime.GetScreen();
        host::Microseconds now = runtime.GetLoop().Now();
        const std::uint64_t before = screen.GetCompositor().FramesComposed();
        std::uint64_t asked = 0;
        MeasureEach(
            state, [&] { now += host::kMicrosecondsPerSecond; },
            [&] {
                hole.SetHoleColor(colors[++asked % 2]);
                hole.RequestRedraw(true);
                screen.ComposeIfDue(now);
            });
        if (screen.GetCompositor().FramesComposed() != before + asked) state.SkipWithError("a frame was left out");
        phone.RequestEnd();
    });
    phone.Run(OspMain, [](int) {});
}
// The play screen is there after seconds only: the number of redraws is not sought by trying.
BENCHMARK(RedrawHole)->Name("hole|ours")->Iterations(3000);

}  // namespace
