#pragma once

#include <memory>
#include <span>
#include <string>

#include "backend/Storage.h"
#include "backend/posix/FileDescriptor.h"

namespace host {

/// Writes all of `bytes` where the file stands; false with errno set when that failed.
[[nodiscard]] bool WriteAll(int file, std::span<const std::byte> bytes);

/// PosixStorage::OpenInput and OpenOutput.
[[nodiscard]] std::unique_ptr<InputFile> OpenPosixInput(const std::string& path, std::string& problem);
[[nodiscard]] std::unique_ptr<OutputFile> OpenPosixOutput(const std::string& path, std::string& problem);

}  // namespace host
