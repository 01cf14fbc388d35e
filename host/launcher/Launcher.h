#pragma once

namespace host {

/// The application's entry point.
using EntryPoint = int (*)(int argc, char* argv[]);

/// Reads the options, opens the phone on a back end and hands the remaining arguments to the application. Returns the
/// process's exit status: the application's result, or 2 with one line on stderr when nothing was started.
int Launch(int argc, char* argv[], EntryPoint entryPoint);

}  // namespace host
