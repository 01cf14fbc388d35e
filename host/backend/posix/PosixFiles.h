#pragma once

#include <memory>
#include <span>
#include <string>

#include "backend/Storage.h"
#include "backend/posix/FileDescriptor.h"

namespace host {

/// Writes all of `bytes` where the file stands; false with errno set when that failed.
[[nodiscard]] bool WriteAll(int file, std::span<const std::byte> bytes);

/// The part of a path before its last separator, with it; empty when there is none.
[[nodiscard]] std::string FolderOf(const std::string& path);
/// Where the path leads when the links at its end are followed, whether there is a file or not; empty when in circles.
[[nodiscard]] std::string FollowLinks(std::string path);

/// PosixStorage::OpenInput, OpenOutput and OpenNewOutput.
[[nodiscard]] std::unique_ptr<InputFile> OpenPosixInput(const std::string& path, std::string& problem);
[[nodiscard]] std::unique_ptr<OutputFile> OpenPosixOutput(const std::string& path, std::string& problem);
[[nodiscard]] std::unique_ptr<OutputFile> OpenNewPosixOutput(const std::string& path, std::string& problem);

}  // namespace host
