#pragma once

#include <string>

namespace host {

// What the launcher learns from the machine it runs on, so that nothing behind it reads the environment.

/// The package's folder with a separator at its end: share/brevant or share/games/brevant in the program's own folder
/// or the one above it. Empty when there is none, with one line in `problem` that says where was looked.
[[nodiscard]] std::string FindPackageRoot(std::string& problem);
/// $XDG_DATA_HOME/brevant/, or what freedesktop.org's XDG base directories put in its place; empty when the environment
/// names no place.
[[nodiscard]] std::string DefaultDataFolder();
/// Where the user keeps music; empty when there is no home folder.
[[nodiscard]] std::string MusicFolder();
/// The two letters of the locale's language, "en" where it has none.
[[nodiscard]] std::string LocaleLanguage();

}  // namespace host
