#include "launcher/Surroundings.h"

#include <sys/auxv.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>
#include <utility>

namespace host {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLanguageLetters = 2;

std::string Environment(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::string() : std::string(value);
}

bool IsPackage(const fs::path& folder) {
    std::error_code error;
    return fs::is_directory(folder / "layouts", error);
}

// Where this program's file is.
fs::path ProgramPath() {
    std::error_code error;
    fs::path program = fs::read_symlink("/proc/self/exe", error);
    // A system may have no /proc, as while it is being installed: then the name that it was started by.
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the kernel hands its addresses over as numbers.
    if (error) program = fs::canonical(reinterpret_cast<const char*>(getauxval(AT_EXECFN)), error);
    return program;
}

bool IsAbsolute(std::string_view path) {
    return !path.empty() && path.front() == '/';
}

// The folder that a line of user-dirs.dirs names for music, "$HOME/…" or an absolute path. Empty for any other line,
// and for the home itself: by the convention of xdg-user-dirs it stands where there is no folder of a kind.
std::string MusicFolderIn(std::string_view line, const std::string& home) {
    constexpr std::string_view kName = "XDG_MUSIC_DIR=\"";
    constexpr std::string_view kHome = "$HOME/";
    line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
    const std::size_t end = line.find('"', kName.size());
    if (line.substr(0, kName.size()) != kName || end == std::string_view::npos) return {};
    std::string folder(line.substr(kName.size(), end - kName.size()));
    if (folder.compare(0, kHome.size(), kHome) == 0) folder.replace(0, kHome.size() - 1, home);
    if (!IsAbsolute(folder) || folder == home || folder == home + '/') return {};
    return folder;
}

}  // namespace

std::string FindPackageRoot(std::string& problem) {
    const fs::path folder = ProgramPath().parent_path();
    problem = "the package's files are in none of these folders:";
    // Installed, the program is in bin/ or games/ beside share/; in a build folder it is beside share/ itself.
    for (const fs::path& place : {folder.parent_path(), folder}) {
        for (const char* share : {"share/brevant", "share/games/brevant"}) {
            const std::string package = place / share;
            if (IsPackage(package)) return package + '/';
            problem += ' ' + package;
        }
    }
    return {};
}

std::string DefaultDataFolder() {
    const std::string data = Environment("XDG_DATA_HOME");
    // "All paths set in these environment variables must be absolute": freedesktop.org, XDG base directories 0.8.
    if (IsAbsolute(data)) return data + "/brevant/";
    const std::string home = Environment("HOME");
    // A relative one would mean another folder wherever the program is started.
    return IsAbsolute(home) ? home + "/.local/share/brevant/" : std::string();
}

std::string MusicFolder() {
    const std::string home = Environment("HOME");
    std::string music = Environment("XDG_MUSIC_DIR");
    if (IsAbsolute(music)) return music;
    if (!IsAbsolute(home)) return {};
    // Desktops name the user's folders in this file, each by a shell's assignment: freedesktop.org, user-dirs.dirs(5).
    const std::string config = Environment("XDG_CONFIG_HOME");
    std::ifstream file((IsAbsolute(config) ? config : home + "/.config") + "/user-dirs.dirs");
    std::string folder = home + "/Music";
    for (std::string line; std::getline(file, line);) {
        if (std::string named = MusicFolderIn(line, home); !named.empty()) folder = std::move(named);
    }
    return folder;
}

std::string LocaleLanguage() {
    // The order in which POSIX lets them override each other (Base Definitions, 8.2).
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const std::string value = Environment(name);
        if (value.empty()) continue;
        const std::string language = value.substr(0, value.find_first_of("_.@"));
        return language.size() == kLanguageLetters ? language : "en";
    }
    return "en";
}

}  // namespace host
