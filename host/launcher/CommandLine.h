#pragma once

#include <string>
#include <vector>

#include "runtime/Options.h"

namespace host {

/// What came of reading a command line.
struct CommandLine {
    enum class Kind { kRun, kShow, kRefuse };

    Kind kind = Kind::kRun;
    Options options;
    std::string text;  ///< what to show on stdout, or the one line why the command line is refused
};

/// Reads the command line. `backends` are the names that --backend takes.
[[nodiscard]] CommandLine ReadCommandLine(int argc, const char* const* argv, const std::vector<std::string>& backends);

}  // namespace host
