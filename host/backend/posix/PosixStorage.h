#pragma once

#include "backend/Storage.h"

namespace host {

/// Files of a POSIX system. UI thread only.
class PosixStorage final : public Storage {
public:
    /// Both folders end with a separator.
    PosixStorage(std::string packageRoot, std::string dataRoot);

    [[nodiscard]] const std::string& PackageRoot() const override { return packageRoot_; }
    [[nodiscard]] const std::string& DataRoot() const override { return dataRoot_; }

    [[nodiscard]] std::optional<FileStamp> Stat(const std::string& path) const override;
    [[nodiscard]] std::vector<std::string> List(const std::string& folder) const override;
    [[nodiscard]] ReadOutcome Read(const std::string& path, std::size_t limit,
                                   std::vector<std::byte>& content) const override;
    [[nodiscard]] std::unique_ptr<InputFile> OpenInput(const std::string& path, std::string& problem) const override;
    /// A device or a pipe that somebody reads can be written as well; it cannot be overwritten.
    [[nodiscard]] std::unique_ptr<OutputFile> OpenOutput(const std::string& path, std::string& problem) override;
    [[nodiscard]] std::unique_ptr<OutputFile> OpenNewOutput(const std::string& path, std::string& problem) override;
    [[nodiscard]] bool MakeFolder(const std::string& folder) override;
    /// A symbolic link stays one: the file that it leads to is replaced. The new file has the old one's permissions,
    /// and is for its user alone when there was none. Missing folders above it are made.
    [[nodiscard]] bool Replace(const std::string& path, std::span<const std::byte> content) override;
    /// The file's folder is locked meanwhile, where the file system knows locks. False, too, when another process does
    /// not give it free.
    [[nodiscard]] bool Update(const std::string& path, std::size_t limit, const Edit& edit) override;

private:
    std::string packageRoot_;
    std::string dataRoot_;
};

}  // namespace host
