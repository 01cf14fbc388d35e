#include "launcher/Surroundings.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

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

}  // namespace

std::string FindPackageRoot() {
    std::error_code error;
    const fs::path program = fs::read_symlink("/proc/self/exe", error);
    if (error) return {};
    // Installed, the program is in bin/ beside share/; in a build folder it is beside share/ itself.
    const fs::path folder = program.parent_path();
    for (const fs::path& place : {folder.parent_path(), folder}) {
        const fs::path package = place / "share" / "brevant";
        if (IsPackage(package)) return package.string() + '/';
    }
    return {};
}

std::string DefaultDataFolder() {
    const std::string data = Environment("XDG_DATA_HOME");
    // "All paths set in these environment variables must be absolute": freedesktop.org, XDG base directories 0.8.
    if (!data.empty() && data.front() == '/') return data + "/brevant/";
    const std::string home = Environment("HOME");
    // A relative one would mean another folder wherever the program is started.
    return home.empty() || home.front() != '/' ? std::string() : home + "/.local/share/brevant/";
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
