#pragma once

#include <string>
#include <vector>

#include "runtime/Options.h"

namespace host {

/// What came of reading a page's options.
struct PageOptions {
    Options options;
    std::string problem;  ///< why they are refused; empty when they are not
};

/// Reads "--name=value" each: the launcher's options that make sense in a page, under their names and with their rules.
/// The library that reads a terminal's command line needs exceptions, which a page has not.
[[nodiscard]] PageOptions ReadPageOptions(const std::vector<std::string>& arguments);

}  // namespace host
