#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// What tells one version of a file from another.
struct FileStamp {
    std::uint64_t bytes = 0;
    std::int64_t modified = 0;  ///< nanoseconds; only for comparing

    friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

enum class ReadOutcome {
    kRead,
    kMissing,
    kNotAFile,  ///< a folder, a pipe or a device
    kTooLarge,
    kFailed,  ///< it may not be read, or reading it failed
};

/// A file that is written while the program runs: a recording, a trace. What the path held before stays until the first
/// Append. A file that was made for it and got nothing is removed again at the end. UI thread only.
class OutputFile {
public:
    virtual ~OutputFile() = default;

    /// Adds `bytes` at the end. The first failure is final: false then and from then on, and what was written before is
    /// left as it is.
    [[nodiscard]] virtual bool Append(std::span<const std::byte> bytes) = 0;
    /// Puts `bytes` in the place of ones that were appended before; `offset` counts from the file's start. It can also
    /// be done after a failed Append, so that a header tells how much there is.
    [[nodiscard]] virtual bool Overwrite(std::uint64_t offset, std::span<const std::byte> bytes) = 0;
    /// Closes the file. False when something that was written is lost, now or before.
    [[nodiscard]] virtual bool Close() = 0;
    /// Why something was lost, in words; empty while nothing was.
    [[nodiscard]] virtual const std::string& Problem() const = 0;
};

/// A file that is read piece by piece: a breath file. UI thread only.
class InputFile {
public:
    virtual ~InputFile() = default;

    /// Bytes in the file when it was opened.
    [[nodiscard]] virtual std::uint64_t Size() const = 0;
    /// Reads up to `bytes.size()` bytes from `offset` on. How many there were: 0 at the end, empty when reading failed.
    [[nodiscard]] virtual std::optional<std::size_t> Read(std::uint64_t offset, std::span<std::byte> bytes) = 0;
};

/// Every file that the program opens: the package's, the data folder's, and those whose paths the user gave. UI thread
/// only.
class Storage {
public:
    virtual ~Storage() = default;

    /// The folder of the package, with a separator at its end.
    [[nodiscard]] virtual const std::string& PackageRoot() const = 0;
    /// The folder of the user's data, with a separator at its end; empty when there is none. It is made when something
    /// is first written to it.
    [[nodiscard]] virtual const std::string& DataRoot() const = 0;

    /// Empty when there is no regular file of that path.
    [[nodiscard]] virtual std::optional<FileStamp> Stat(const std::string& path) const = 0;
    /// The names of the regular files in the folder, sorted; none when there is no such folder.
    [[nodiscard]] virtual std::vector<std::string> List(const std::string& folder) const = 0;
    /// Reads a whole regular file of at most `limit` bytes into `content`.
    [[nodiscard]] virtual ReadOutcome Read(const std::string& path, std::size_t limit,
                                           std::vector<std::byte>& content) const = 0;
    /// Opens a regular file for reading piece by piece; null with the reason in `problem` when it cannot be.
    [[nodiscard]] virtual std::unique_ptr<InputFile> OpenInput(const std::string& path, std::string& problem) const = 0;
    /// Opens a file for writing, and makes it when it is missing; its folder must be there. Null with the reason in
    /// `problem` when it cannot be written. Nothing that the path held is lost before the first Append.
    [[nodiscard]] virtual std::unique_ptr<OutputFile> OpenOutput(const std::string& path, std::string& problem) = 0;
    /// Makes a file for writing that was not there: null with the reason in `problem` when it cannot be made, and null
    /// with none when there is something of that name already.
    [[nodiscard]] virtual std::unique_ptr<OutputFile> OpenNewOutput(const std::string& path, std::string& problem) {
        return Stat(path) ? nullptr : OpenOutput(path, problem);
    }
    /// Makes the folder, and those above it, where they are missing; false when it cannot be.
    [[nodiscard]] virtual bool MakeFolder(const std::string& folder) = 0;
    /// Puts `content` in the file's place whole and durably: at any moment, also after a kill or with a full disk, the
    /// path holds either the old or the new content. False when the old one is still there.
    [[nodiscard]] virtual bool Replace(const std::string& path, std::span<const std::byte> content) = 0;

    /// Makes a file's new content of its old one, which is empty where there is no file. Nothing: it stays as it is.
    using Edit = std::function<std::optional<std::vector<std::byte>>(std::span<const std::byte> content)>;
    /// Replaces a file of at most `limit` bytes by what `edit` makes of it now. Where several processes share the file,
    /// no other one changes it in the same way between the two. False when the old content is still there.
    [[nodiscard]] virtual bool Update(const std::string& path, std::size_t limit, const Edit& edit) {
        std::vector<std::byte> content;
        const ReadOutcome outcome = Read(path, limit, content);
        if (outcome != ReadOutcome::kRead && outcome != ReadOutcome::kMissing) return false;
        const auto edited = edit(content);
        return edited && Replace(path, *edited);
    }
};

/// Why a file was not read, for a message: "it is missing". Empty for kRead.
[[nodiscard]] constexpr std::string_view ReasonOf(ReadOutcome outcome) noexcept {
    switch (outcome) {
        case ReadOutcome::kRead:
            return {};
        case ReadOutcome::kMissing:
            return "it is missing";
        case ReadOutcome::kNotAFile:
            return "it is not a regular file";
        case ReadOutcome::kTooLarge:
            return "it is too large";
        case ReadOutcome::kFailed:
            return "it cannot be read";
    }
    return {};
}

}  // namespace host
