#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "backend/web/WebBackend.h"
#include "launcher/page/PageOptions.h"
#include "runtime/Phone.h"

// The application's entry point, which the phone's launcher would call.
extern "C" int OspMain(int argc, char* argv[]);

namespace {

using namespace host;

constexpr auto kBackends = std::to_array<BackendEntry>({
    {"web", Attendance::kAttended, MicrophoneSupport::kDevice, IsWebAvailable, CreateWebBackend, WebLibraries},
    {"headless", Attendance::kUnattended, MicrophoneSupport::kNone, IsWebAvailable, CreateRenderingBackend,
     WebLibraries},
});

// Where storage.mjs has them.
constexpr const char* kPackageRoot = "package/";
constexpr const char* kDataRoot = "data/";

constexpr const char* kLanguages = "de en es fr ja ko pt";

/// It lives as long as the page: what calls it at its end is called by it.
std::unique_ptr<Phone> phone;

// The screen has the canvas's proportions, so that nothing is left over at its sides, as far as a phone's may be.
PixelSize ScreenFor(PixelSize canvas, PixelSize usual) {
    constexpr double kLeastHeight = 4.0 / 3;
    constexpr double kMostHeight = 22.0 / 9;
    if (canvas.width <= 0 || canvas.height <= canvas.width) return usual;
    const double height = static_cast<double>(canvas.height) / canvas.width;
    return {usual.width, static_cast<int>(std::lround(usual.width * std::clamp(height, kLeastHeight, kMostHeight)))};
}

bool HasScreen(const std::vector<std::string>& arguments) {
    return std::any_of(arguments.begin(), arguments.end(),
                       [](const std::string& argument) { return argument.rfind("--screen=", 0) == 0; });
}

}  // namespace

// A page's build has no exceptions: what would throw one ends the program.
int main(int argc, char* argv[]) {  // NOLINT(bugprone-exception-escape)
    const std::vector<std::string> arguments(argv + std::min(argc, 1), argv + argc);
    PageOptions page = ReadPageOptions(arguments);
    Options& options = page.options;
    const std::string name = options.backend.value_or("web");
    const auto* const entry =
        std::find_if(kBackends.begin(), kBackends.end(), [&](const BackendEntry& each) { return each.name == name; });
    if (page.problem.empty() && entry == kBackends.end()) page.problem = "--backend takes web or headless";
    if (!page.problem.empty()) {
        TellPageOfRefusal(page.problem);
        return 0;
    }
    const std::string language = BrowserLanguage(kLanguages);
    if (!language.empty()) options.preferredLanguage = language;
    if (entry->attendance == Attendance::kAttended && !options.performance && !HasScreen(arguments)) {
        options.screen = ScreenFor(CanvasSize(), options.screen);
    }
    options.rest = {"brevant"};

    std::string problem;
    phone = std::make_unique<Phone>(*entry, BackendOptions{kPackageRoot, kDataRoot}, std::move(options));
    if (!phone->Open(problem)) {
        TellPageOfRefusal(problem);
        return 0;
    }
    phone->Run(OspMain, TellPageOfEnd);
    return 0;
}
