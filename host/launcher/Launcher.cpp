#include "launcher/Launcher.h"

#include <array>
#include <csignal>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <new>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "backend/Backend.h"
#include "backend/headless/HeadlessBackend.h"
#include "launcher/CommandLine.h"
#include "launcher/Surroundings.h"
#include "runtime/Console.h"
#include "runtime/package/Package.h"
#include "runtime/soundfile/SoundReader.h"
#ifdef BREVANT_DESKTOP
#include "backend/desktop/DesktopBackend.h"
#endif
#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace host {

namespace {

namespace fs = std::filesystem;

constexpr int kNeverEnded = 1;
constexpr int kOutOfMemory = 1;
constexpr int kRefused = 2;
constexpr int kNoDisplay = 3;

// In the order in which they are tried when no name was given. Headless works everywhere, so it comes last.
constexpr auto kBackends = std::to_array<BackendEntry>({
#ifdef BREVANT_DESKTOP
    {"desktop", Attendance::kAttended, MicrophoneSupport::kDevice, IsDesktopAvailable, CreateDesktopBackend,
     DesktopLibraries},
#endif
    {"headless", Attendance::kUnattended, MicrophoneSupport::kNone, IsHeadlessAvailable, CreateHeadlessBackend,
     HeadlessLibraries},
});

}  // namespace

std::vector<std::string> BackendNames() {
    std::vector<std::string> names;
    names.reserve(kBackends.size());
    for (const BackendEntry& entry : kBackends) names.emplace_back(entry.name);
    return names;
}

namespace {

// The version, and what the program stands on: what a report of a fault needs.
std::string VersionText() {
    std::string text = "brevant " BREVANT_VERSION "\n";
    for (const BackendEntry& entry : kBackends) {
        text += "back end " + std::string(entry.name) + ": " + entry.libraries() + '\n';
    }
    return text + "sound files: " + SoundReader::Library() + "\npackage: " + Package::XmlLibrary() +
           "\noptions: CLI11 " + OptionsLibraryVersion() + '\n';
}

// The one of that name, or the first that works here; null when that is none.
const BackendEntry* FindBackend(const std::optional<std::string>& name) {
    for (const BackendEntry& entry : kBackends) {
        if ((!name || entry.name == *name) && entry.isAvailable()) return &entry;
    }
    return nullptr;
}

void Say(const std::string& line) {
    std::fprintf(stderr, "brevant: %s\n", Printable(line).c_str());
}

int Refuse(const std::string& reason, int status = kRefused) {
    Say(reason);
    return status;
}

int Show(const std::string& text) {
    const bool isShown = std::fputs(text.c_str(), stdout) >= 0 && std::fflush(stdout) == 0;
    return isShown ? 0 : Refuse("the standard output cannot be written");
}

std::string WithSeparator(const std::string& folder) {
    return folder.empty() || folder.back() == '/' ? folder : folder + '/';
}

// A folder that may still have to be made: empty, or the reason why it cannot be one.
std::string ReasonAgainstFolder(const std::string& folder, const char* option) {
    std::error_code error;
    if (folder.empty()) return std::string(option) + ": the folder's name is empty";
    if (fs::exists(folder, error) && !fs::is_directory(folder, error))
        return folder + ": " + option + " takes a folder";
    return {};
}

// Where the program's own files lie.
struct Folders {
    std::string package;
    std::string data;
};

// The file that is, or would be made, at the end of links.
fs::path Target(fs::path path) {
    constexpr int kMostLinks = 40;  // As many as Linux follows.
    std::error_code error;
    for (int links = 0; links < kMostLinks && fs::is_symlink(path, error); ++links) {
        path = path.parent_path() / fs::read_symlink(path, error);
    }
    return fs::weakly_canonical(fs::absolute(path, error), error);
}

bool AreSameFile(const std::string& one, const std::string& other) {
    std::error_code error;
    // A device or a pipe holds nothing that could be lost.
    if (fs::exists(one, error) && !fs::is_regular_file(one, error)) return false;
    return fs::equivalent(one, other, error) || Target(one) == Target(other);
}

// True for a file below the folder, whether it is there or not.
bool IsBelow(const fs::path& target, const std::string& folder) {
    if (folder.empty()) return false;
    const fs::path inside = target.lexically_relative(Target(folder));
    return !inside.empty() && *inside.begin() != ".." && inside != ".";
}

// What the program reads beside what its options name: the package, and the settings of the data folder.
bool IsOwnFile(const std::string& path, const Folders& folders) {
    constexpr std::string_view kSettingsEnding = ".ini";
    const fs::path target = Target(path);
    return IsBelow(target, folders.package) || (IsBelow(target, folders.data) && target.extension() == kSettingsEnding);
}

// What is written must not be what is read, nor written twice: empty, or the reason against it.
std::string ReasonAgainstFiles(const Options& options, const Folders& folders) {
    struct Named {
        const char* option;
        const std::optional<std::string>& path;
    };
    const std::array<Named, 6> files{{{"--performance", options.performance},
                                      {"--breath", options.breath},
                                      {"--record", options.record},
                                      {"--trace", options.trace},
                                      {"--midi-file", options.midiFile},
                                      {"--keep-performance", options.keepPerformance}}};
    constexpr std::size_t kFirstWritten = 2;
    for (std::size_t written = kFirstWritten; written < files.size(); ++written) {
        if (!files[written].path) continue;
        const std::string wouldOverwrite = *files[written].path + ": " + files[written].option + " would overwrite ";
        if (IsOwnFile(*files[written].path, folders)) return wouldOverwrite + "the program's own file";
        for (std::size_t other = 0; other < written; ++other) {
            if (!files[other].path || !AreSameFile(*files[written].path, *files[other].path)) continue;
            return wouldOverwrite + "what " + files[other].option + " names";
        }
    }
    return {};
}

// Called where memory is asked for and there is none, on any thread. Nothing can be saved then: what is written at all
// is written whole as it goes.
[[noreturn]] void EndWithoutMemory() {
    std::fputs("brevant: there is not enough memory\n", stderr);
    std::_Exit(kOutOfMemory);
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

}  // namespace

int Launch(int argc, char* argv[], EntryPoint entryPoint) {
    std::set_new_handler(EndWithoutMemory);
    // Whoever reads what is printed may stop reading: that is no reason to lose what is written elsewhere.
    std::signal(SIGPIPE, SIG_IGN);
    KeepLargeBlocks();
    CommandLine line = ReadCommandLine(argc, argv, BackendNames(), VersionText());
    if (line.kind == CommandLine::Kind::kRefuse) return Refuse(line.text);
    if (line.kind == CommandLine::Kind::kShow) return Show(line.text);
    Options& options = line.options;
    options.preferredLanguage = LocaleLanguage();
    options.musicFolder = MusicFolder();

    std::string problem;
    if (options.dataFolder) problem = ReasonAgainstFolder(*options.dataFolder, "--data");
    if (problem.empty()) problem = ReasonAgainstFolder(options.screenshots, "--screenshots");
    if (!problem.empty()) return Refuse(problem);
    const std::string packageRoot = FindPackageRoot(problem);
    if (packageRoot.empty()) return Refuse(problem);
    const std::string dataFolder = options.dataFolder ? *options.dataFolder : DefaultDataFolder();
    problem = ReasonAgainstFiles(options, {packageRoot, dataFolder});
    if (!problem.empty()) return Refuse(problem);
    const BackendEntry* entry = FindBackend(options.backend);
    if (entry == nullptr) return Refuse("no display can be reached; --backend headless needs none", kNoDisplay);
    if (!options.backend && !options.performance && entry->attendance == Attendance::kUnattended) {
        return Refuse(
            "no display can be reached, so nobody can play; --performance FILE plays a performance without one, "
            "and --help tells more",
            kNoDisplay);
    }

    Phone phone(*entry, {packageRoot, WithSeparator(dataFolder)}, std::move(options));
    if (!phone.Open(problem)) return Refuse(problem);
    if (dataFolder.empty()) Say("settings are not kept: HOME is no absolute path, and no --data DIR is given");

    int status = kNeverEnded;
    phone.Run(entryPoint, [&status](int exitStatus) { status = exitStatus; });
    return status;
}

}  // namespace host
