#pragma once

#include <string>
#include <vector>

#include "runtime/Phone.h"

namespace host {

/// The names of the back ends that this program was built with.
[[nodiscard]] std::vector<std::string> BackendNames();

/// Reads the command line, opens the phone on a back end and runs the application on it. Returns the process's exit
/// status: the application's result; 1 when something that was asked for got lost on the way; 2, with one line on
/// stderr, when nothing was started; 3, likewise, when that is for want of a display.
int Launch(int argc, char* argv[], EntryPoint entryPoint);

}  // namespace host
