#pragma once

#include "backend/Storage.h"

namespace host {

/// Files as the page keeps them: the package's in one archive, the data folder's in the browser's own storage, and
/// those that the user gave or gets in the page's memory. UI thread only.
class WebStorage final : public Storage {
public:
    /// Both folders end with a separator.
    WebStorage(std::string packageRoot, std::string dataRoot);

    [[nodiscard]] const std::string& PackageRoot() const override { return packageRoot_; }
    [[nodiscard]] const std::string& DataRoot() const override { return dataRoot_; }

    /// A file's version is its size alone: within a visit no file changes but those that the program itself writes.
    [[nodiscard]] std::optional<FileStamp> Stat(const std::string& path) const override;
    [[nodiscard]] std::vector<std::string> List(const std::string& folder) const override;
    [[nodiscard]] ReadOutcome Read(const std::string& path, std::size_t limit,
                                   std::vector<std::byte>& content) const override;
    [[nodiscard]] std::unique_ptr<InputFile> OpenInput(const std::string& path, std::string& problem) const override;
    [[nodiscard]] std::unique_ptr<OutputFile> OpenOutput(const std::string& path, std::string& problem) override;
    [[nodiscard]] bool MakeFolder(const std::string& folder) override;
    /// The browser replaces a stored value whole, or keeps the old one.
    [[nodiscard]] bool Replace(const std::string& path, std::span<const std::byte> content) override;

private:
    std::string packageRoot_;
    std::string dataRoot_;
};

}  // namespace host
