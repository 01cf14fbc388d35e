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

/// Reads the command line. `backends` are the names that --backend takes, `version` is what --version shows.
[[nodiscard]] CommandLine ReadCommandLine(int argc, const char* const* argv, const std::vector<std::string>& backends,
                                          const std::string& version);

/// The version of the library that reads the command line.
[[nodiscard]] std::string OptionsLibraryVersion();

/// What manuals and shells are told of an option.
struct OptionDescription {
    std::string name;   ///< with its dashes
    std::string value;  ///< what kind of value it takes: "FILE", "DIR"; empty for none
    std::string text;
};
/// Every option, in the order of the help page.
[[nodiscard]] std::vector<OptionDescription> DescribeOptions(const std::vector<std::string>& backends);

}  // namespace host
