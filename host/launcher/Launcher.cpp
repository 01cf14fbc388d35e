#include "launcher/Launcher.h"

#include <array>
#include <cstdio>
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>
#include <variant>
#include <vector>

#include "backend/Backend.h"
#include "backend/headless/HeadlessBackend.h"
#include "launcher/Options.h"
#include "launcher/Surroundings.h"
#include "runtime/Runtime.h"
#include "runtime/performance/Performance.h"
#ifdef BREVANT_DESKTOP
#include "backend/desktop/DesktopBackend.h"
#endif
#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace host {

namespace {

namespace fs = std::filesystem;

constexpr int kRefused = 2;
constexpr std::string_view kHeadless = "headless";

// In the order in which they are tried when no name was given. Headless works everywhere, so it comes last.
constexpr auto kBackends = std::to_array<BackendEntry>({
#ifdef BREVANT_DESKTOP
    {"desktop", IsDesktopAvailable, CreateDesktopBackend},
#endif
    {kHeadless, IsHeadlessAvailable, CreateHeadlessBackend},
});

std::vector<std::string> BackendNames() {
    std::vector<std::string> names;
    names.reserve(kBackends.size());
    for (const BackendEntry& entry : kBackends) names.emplace_back(entry.name);
    return names;
}

const BackendEntry* FindBackend(const std::optional<std::string>& name) {
    for (const BackendEntry& entry : kBackends) {
        if (name ? entry.name == *name : entry.isAvailable()) return &entry;
    }
    return nullptr;
}

int Refuse(const std::string& reason) {
    std::fprintf(stderr, "brevant: %s\n", reason.c_str());
    return kRefused;
}

std::string WithSeparator(const std::string& folder) {
    return !folder.empty() && folder.back() == '/' ? folder : folder + '/';
}

// A folder that may still have to be made: empty, or the reason why it cannot be one.
std::string ReasonAgainstFolder(const std::string& folder, const char* option) {
    std::error_code error;
    if (folder.empty()) return std::string(option) + ": the folder's name is empty";
    if (fs::exists(folder, error) && !fs::is_directory(folder, error))
        return folder + ": " + option + " takes a folder";
    return {};
}

// Decoded pictures and frames are blocks of megabytes that come and go. glibc would give each back to the system and
// have its pages faulted in anew, which took a fifth of the processor's time of a headless run (16,300 faults, now
// 10,800).
void KeepLargeBlocks() {
#ifdef __GLIBC__
    constexpr int kLargestKeptBytes = 32 * 1024 * 1024;
    mallopt(M_MMAP_THRESHOLD, kLargestKeptBytes);
    mallopt(M_TRIM_THRESHOLD, 2 * kLargestKeptBytes);
#endif
}

bool TakesScreenshots(const Performance& performance) {
    for (const Performance::Step& step : performance.Steps()) {
        if (std::holds_alternative<ScreenshotAction>(step.action)) return true;
    }
    return false;
}

bool MakeFolder(const std::string& folder) {
    std::error_code error;
    fs::create_directories(folder, error);
    return fs::is_directory(folder, error);
}

}  // namespace

int Launch(int argc, char* argv[], EntryPoint entryPoint) {
    KeepLargeBlocks();
    OptionsOutcome outcome = ReadOptions(argc, argv, BackendNames());
    if (outcome.kind == OptionsOutcome::Kind::kRefuse) return Refuse(outcome.text);
    if (outcome.kind == OptionsOutcome::Kind::kShow) {
        std::fputs(outcome.text.c_str(), stdout);
        return 0;
    }
    Options& options = outcome.options;

    const std::string dataFolder = options.dataFolder ? *options.dataFolder : DefaultDataFolder();
    std::string problem = ReasonAgainstFolder(dataFolder, "--data");
    if (problem.empty()) problem = ReasonAgainstFolder(options.screenshots, "--screenshots");
    if (!problem.empty()) return Refuse(problem);
    const std::string packageRoot = FindPackageRoot();
    if (packageRoot.empty()) return Refuse("the package's files are not in share/brevant beside the program or one folder above it");

    RuntimeOptions runtimeOptions;
    runtimeOptions.screen = options.screen;
    runtimeOptions.language = options.language ? *options.language : LocaleLanguage();
    runtimeOptions.languageChoice = options.language ? LanguageChoice::kAskedFor : LanguageChoice::kPreferred;
    runtimeOptions.ringtoneVolume = options.ringtoneVolume;
    runtimeOptions.recordPath = options.record;
    runtimeOptions.breathPath = options.breath;
    runtimeOptions.tracePath = options.trace;
    runtimeOptions.hasTraceTimers = options.hasTraceTimers;
    runtimeOptions.screenshotFolder = options.screenshots;
    if (options.performance) {
        runtimeOptions.performance = Performance::Load(*options.performance, problem);
        if (!runtimeOptions.performance) return Refuse(problem);
        if (TakesScreenshots(*runtimeOptions.performance) && !MakeFolder(options.screenshots)) {
            return Refuse(options.screenshots + ": the folder for the screenshots cannot be made");
        }
    }

    const BackendEntry* entry = FindBackend(options.backend);
    if (entry == nullptr || !entry->isAvailable())
        return Refuse("no display can be reached; --backend headless needs none");
    const bool isHeadless = entry->name == kHeadless;
    if (isHeadless && !runtimeOptions.performance) runtimeOptions.performance = std::make_shared<const Performance>();
    runtimeOptions.endsAfterPerformance = isHeadless;
    runtimeOptions.isMicrophoneSimulated = isHeadless || options.breath || options.performance;

    const auto backend = entry->create({packageRoot, WithSeparator(dataFolder)});
    Runtime runtime(*backend, std::move(runtimeOptions));
    if (!runtime.Open(problem)) return Refuse(problem);

    std::vector<char*> rest;
    for (std::string& argument : options.rest) rest.push_back(argument.data());
    const int restCount = static_cast<int>(rest.size());
    rest.push_back(nullptr);
    return entryPoint(restCount, rest.data());
}

}  // namespace host
