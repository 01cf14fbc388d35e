#pragma once

#include <optional>
#include <string>
#include <vector>

#include "backend/Geometry.h"

namespace host {

/// The launcher's command line after reading; paths as they were given.
struct Options {
    std::optional<std::string> backend;
    PixelSize screen{720, 1280};
    std::optional<std::string> dataFolder;
    std::optional<std::string> performance;
    std::optional<std::string> breath;
    std::optional<std::string> record;
    std::string screenshots = ".";
    std::optional<std::string> trace;
    bool hasTraceTimers = false;
    int ringtoneVolume = 11;
    std::optional<std::string> language;
    /// The program's path and what the launcher left for the application.
    std::vector<std::string> rest;
};

/// What came of reading a command line.
struct OptionsOutcome {
    enum class Kind { kRun, kShow, kRefuse };

    Kind kind = Kind::kRun;
    Options options;
    std::string text;  ///< what to show on stdout, or the one line why the command line is refused
};

/// Reads the command line. `backends` are the names that --backend takes.
[[nodiscard]] OptionsOutcome ReadOptions(int argc, const char* const* argv, const std::vector<std::string>& backends);

}  // namespace host
