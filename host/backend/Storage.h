#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace host {

/// What tells one version of a file from another.
struct FileStamp {
    std::uint64_t bytes = 0;
    std::int64_t modified = 0;  ///< nanoseconds; only for comparing

    friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

enum class ReadOutcome { kRead, kMissing, kTooLarge, kFailed };

/// The package's files and the data folder. UI thread only.
class Storage {
public:
    virtual ~Storage() = default;

    /// The folder of the package, with a separator at its end.
    [[nodiscard]] virtual const std::string& PackageRoot() const = 0;
    /// The folder of the user's data, with a separator at its end. It is made when something is first written to it.
    [[nodiscard]] virtual const std::string& DataRoot() const = 0;

    /// Empty when there is no regular file of that path.
    [[nodiscard]] virtual std::optional<FileStamp> Stat(const std::string& path) const = 0;
    /// The names of the regular files in the folder, sorted; none when there is no such folder.
    [[nodiscard]] virtual std::vector<std::string> List(const std::string& folder) const = 0;
    /// Reads a whole regular file of at most `limit` bytes into `content`.
    [[nodiscard]] virtual ReadOutcome Read(const std::string& path, std::size_t limit,
                                           std::vector<std::byte>& content) const = 0;
    /// Puts `content` in the file's place whole and durably: at any moment, also after a kill or with a full disk, the
    /// path holds either the old or the new content. False when the old one is still there.
    [[nodiscard]] virtual bool Replace(const std::string& path, std::span<const std::byte> content) = 0;
};

}  // namespace host
