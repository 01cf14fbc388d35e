#pragma once

#include "runtime/Phone.h"

namespace host {

/// Reads the command line, opens the phone on a back end and runs the application on it. Returns the process's exit
/// status: the application's result; 1 when something that was asked for got lost on the way; 2, with one line on
/// stderr, when nothing was started.
int Launch(int argc, char* argv[], EntryPoint entryPoint);

}  // namespace host
