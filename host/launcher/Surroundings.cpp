#include "launcher/Surroundings.h"

#include <sys/auxv.h>

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

// Where this program's file is.
fs::path ProgramPath() {
    std::error_code error;
    fs::path program = fs::read_symlink("/proc/self/exe", error);
    // A system may have no /proc, as while it is being installed: then the name that it was started by.
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the kernel hands its addresses over as numbers.
    if (error) program = fs::canonical(reinterpret_cast<const char*>(getauxval(AT_EXECFN)), error);
    return program;
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
