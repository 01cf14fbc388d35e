// The full frame through the screen that the program has: every visible control is asked for its drawing, painted on
// its own surface, composed and presented. "ours" is the scene that the peers paint, as a form of labels and buttons.
// "ours, play screen" is the ocarina's own, of which there is no copy to compare with.

#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "Measure.h"
#include "Scene.h"
#include "Tizen/App/UiApp.h"
#include "Tizen/Ui/Controls/Form.h"
#include "Tizen/Ui/Controls/Frame.h"
#include "runtime/screen/Screen.h"
#include "runtime/screen/composing/Compositor.h"
#include "support/TestPhone.h"

namespace {

namespace fs = std::filesystem;

constexpr int kPlayScreenShownMs = 4000;

std::string Hex(unsigned color) {
    char text[8];
    std::snprintf(text, sizeof text, "#%06X", color);
    return text;
}

std::string Bounds(const SceneRect& rect) {
    const auto& [x, y, width, height] = rect;
    return " bounds=\"" + std::to_string(x) + ',' + std::to_string(y) + ',' + std::to_string(width) + ',' +
           std::to_string(height) + '"';
}

/// Makes a package whose one form is the scene.
void WriteScene(const TemporaryFolder& folder) {
    for (const char* name : {"images", "layouts", "strings"}) fs::create_directory(folder / name);
    std::string form = "<Form name=\"IDF_SCENE\" design=\"720x1280\" background=\"" + Hex(kSceneBackground) + "\">\n";
    std::string strings = "<strings language=\"en\">\n";
    int number = 0;
    const auto begin = [&](const char* kind, const SceneRect& place) {
        form += std::string("<") + kind + " name=\"N" + std::to_string(++number) + '"' + Bounds(place);
    };
    for (const SceneRect& hole : kSceneHoles) {
        begin("Label", hole);
        form += " corner=\"" + std::to_string(hole.width / 2) + "\" background=\"" + Hex(kSceneHole) + "\"/>\n";
    }
    for (const SceneRect& button : kSceneButtons) {
        begin("Button", button);
        form += " corner=\"" + std::to_string(kSceneCorner) + "\" gradient=\"" + Hex(kSceneButtonTop) + ',' +
                Hex(kSceneButtonBottom) + "\"/>\n";
    }
    for (const SceneText& text : kSceneTexts) {
        begin("Label", {text.x, text.y, kSceneTextWidth, kSceneLineHeight});
        const std::string id = "IDS_" + std::to_string(number);
        form += " text=\"" + id + "\" text-size=\"" + std::to_string(kSceneTextSize) + "\" text-color=\"" +
                Hex(kSceneInk) + "\"/>\n";
        strings += "<string id=\"" + id + "\">" + text.text + "</string>\n";
    }
    for (const ScenePicture& picture : kScenePictures) {
        begin("Label", picture.place);
        form += std::string(" picture=\"") + picture.file + "\"/>\n";
        fs::copy_file(std::string(BREVANT_PACKAGE "images/") + picture.file, folder / "images/" + picture.file);
    }
    folder.Write("layouts/IDF_SCENE.xml", form + "</Form>\n");
    folder.Write("strings/en.xml", strings + "</strings>\n");
    folder.Write("keys.xml", "<keys/>\n");
}

class SceneApp final : public Tizen::App::UiApp {
public:
    static Tizen::App::UiApp* CreateInstance() { return new SceneApp; }

    bool OnAppInitializing(Tizen::App::AppRegistry&) override { return true; }
    bool OnAppInitialized() override {
        auto* pFrame = new Tizen::Ui::Controls::Frame;
        pFrame->Construct();
        AddFrame(*pFrame);
        auto* pForm = new Tizen::Ui::Controls::Form;
        if (pForm->Construct(L"IDF_SCENE") != E_SUCCESS) throw std::runtime_error("the scene has no form");
        pFrame->AddControl(*pForm);
        pFrame->SetCurrentForm(*pForm);
        return true;
    }
    bool OnAppTerminating(Tizen::App::AppRegistry&, bool) override { return true; }
};

/// Measures within a handler of the running program; each frame comes when the display wants one.
void MeasureFrames(benchmark::State& state, TestPhone& phone) {
    host::Screen& screen = phone.GetScreen();
    host::Microseconds now = phone.GetRuntime().GetLoop().Now();
    const std::uint64_t before = screen.GetCompositor().FramesComposed();
    std::uint64_t asked = 0;
    MeasureEach(
        state, [&] { now += host::kMicrosecondsPerSecond; },
        [&] {
            screen.GetCompositor().RepaintAll();
            screen.ComposeIfDue(now);
            ++asked;
        });
    if (screen.GetCompositor().FramesComposed() != before + asked) state.SkipWithError("a frame was left out");
}

void Scene(benchmark::State& state) {
    const TemporaryFolder package;
    WriteScene(package);
    TestPhone phone({}, package.Path());
    phone.At(1000, [&] {
        MeasureFrames(state, phone);
        phone.GetPhone().RequestEnd();
    });
    phone.GetPhone().Run(
        [](int, char**) { return static_cast<int>(Tizen::App::UiApp::Execute(SceneApp::CreateInstance, nullptr)); },
        [](int) {});
}
BENCHMARK(Scene)->Name("frame|ours");

void PlayScreen(benchmark::State& state) {
    TestPhone phone;
    phone.At(kPlayScreenShownMs, [&] { MeasureFrames(state, phone); });
    phone.RunOcarina(kPlayScreenShownMs + 1);
}
BENCHMARK(PlayScreen)->Name("frame, play screen|ours");

}  // namespace
