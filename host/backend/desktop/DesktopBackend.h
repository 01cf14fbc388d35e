#pragma once

#include <memory>
#include <string>

#include "backend/Backend.h"

namespace host {

/// The back end for playing, on a desktop or a Linux phone. DesktopBackend.cpp lists what it has. One at a time.
[[nodiscard]] std::unique_ptr<Backend> CreateDesktopBackend(const BackendOptions& options);

/// Whether a display can be reached. The connection is kept for the back end that is created next.
[[nodiscard]] bool IsDesktopAvailable();

/// The libraries that it stands on, with their versions.
[[nodiscard]] std::string DesktopLibraries();

}  // namespace host
