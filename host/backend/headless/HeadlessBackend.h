#pragma once

#include <memory>
#include <string>

#include "backend/Backend.h"

namespace host {

/// A back end for tests and for playing performances faster than they sound. HeadlessBackend.cpp lists what it has.
[[nodiscard]] std::unique_ptr<Backend> CreateHeadlessBackend(const BackendOptions& options);

/// It works everywhere.
[[nodiscard]] bool IsHeadlessAvailable();

/// The libraries that it stands on, with their versions.
[[nodiscard]] std::string HeadlessLibraries();

}  // namespace host
