#include "backend/posix/PosixFiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstring>
#include <system_error>
#include <utility>

namespace host {

namespace {

// In the "C" locale's words, which a test can rely on.
std::string ReasonOf(int error) {
    return std::generic_category().message(error);
}

class PosixInputFile final : public InputFile {
public:
    PosixInputFile(FileDescriptor file, std::uint64_t size) : file_(std::move(file)), size_(size) {}

    [[nodiscard]] std::uint64_t Size() const override { return size_; }

    [[nodiscard]] std::optional<std::size_t> Read(std::uint64_t offset, std::span<std::byte> bytes) override {
        for (;;) {
            const ssize_t got = ::pread(file_.Get(), bytes.data(), bytes.size(), static_cast<off_t>(offset));
            if (got >= 0) return static_cast<std::size_t>(got);
            if (errno != EINTR) return std::nullopt;
        }
    }

private:
    FileDescriptor file_;
    std::uint64_t size_;
};

class PosixOutputFile final : public OutputFile {
public:
    enum class Origin { kWasThere, kMade };
    enum class Kind { kRegular, kStream };

    PosixOutputFile(FileDescriptor file, std::string path, Origin origin, Kind kind)
        : file_(std::move(file)), path_(std::move(path)), origin_(origin), kind_(kind) {}
    PosixOutputFile(const PosixOutputFile&) = delete;
    PosixOutputFile& operator=(const PosixOutputFile&) = delete;
    ~PosixOutputFile() override {
        if (!hasContent_ && origin_ == Origin::kMade) ::unlink(path_.c_str());
    }

    [[nodiscard]] bool Append(std::span<const std::byte> bytes) override {
        if (!problem_.empty()) return false;
        if (!std::exchange(hasBegun_, true) && kind_ == Kind::kRegular && ::ftruncate(file_.Get(), 0) != 0)
            return Fail();
        const bool isWritten = WriteAll(file_.Get(), bytes) || Fail();
        hasContent_ |= isWritten || ::lseek(file_.Get(), 0, SEEK_CUR) > 0;
        return isWritten;
    }

    [[nodiscard]] bool Overwrite(std::uint64_t offset, std::span<const std::byte> bytes) override {
        while (!bytes.empty()) {
            const ssize_t written = ::pwrite(file_.Get(), bytes.data(), bytes.size(), static_cast<off_t>(offset));
            if (written < 0 && errno == EINTR) continue;
            if (written == 0) errno = EIO;
            if (written <= 0) return Fail();
            bytes = bytes.subspan(static_cast<std::size_t>(written));
            offset += static_cast<std::uint64_t>(written);
        }
        return true;
    }

    [[nodiscard]] bool Close() override {
        if (file_.IsOpen() && !file_.Close()) Fail();
        return problem_.empty();
    }

    [[nodiscard]] const std::string& Problem() const override { return problem_; }

private:
    // Always false.
    bool Fail() {
        if (problem_.empty()) problem_ = ReasonOf(errno);
        return false;
    }

    FileDescriptor file_;
    std::string path_;
    Origin origin_;
    Kind kind_;
    bool hasBegun_ = false;
    bool hasContent_ = false;  ///< as far as this object wrote it
    std::string problem_;
};

constexpr mode_t kNewFileMode = 0666;  // Less what the user's mask takes away.

}  // namespace

std::string FolderOf(const std::string& path) {
    return path.substr(0, path.rfind('/') + 1);
}

std::string FollowLinks(std::string path) {
    constexpr int kMostLinks = 40;  // As many as Linux follows.
    for (int links = 0; links < kMostLinks; ++links) {
        struct stat status {};
        if (::lstat(path.c_str(), &status) != 0 || !S_ISLNK(status.st_mode)) return path;
        std::string target(PATH_MAX, '\0');
        const ssize_t length = ::readlink(path.c_str(), target.data(), target.size());
        if (length <= 0) return {};
        target.resize(static_cast<std::size_t>(length));
        if (target.front() != '/') target.insert(0, FolderOf(path));
        path = target;
    }
    return {};
}

bool WriteAll(int file, std::span<const std::byte> bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(file, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written == 0) errno = EIO;  // The system told no reason.
        if (written <= 0) return false;
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    return true;
}

std::unique_ptr<InputFile> OpenPosixInput(const std::string& path, std::string& problem) {
    // Without O_NONBLOCK a pipe in the file's place would keep the program waiting for its writer.
    FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status {};
    if (!file.IsOpen() || ::fstat(file.Get(), &status) != 0) {
        problem = ReasonOf(errno);
        return nullptr;
    }
    if (!S_ISREG(status.st_mode)) {
        problem = host::ReasonOf(ReadOutcome::kNotAFile);
        return nullptr;
    }
    return std::make_unique<PosixInputFile>(std::move(file), static_cast<std::uint64_t>(status.st_size));
}

std::unique_ptr<OutputFile> OpenPosixOutput(const std::string& path, std::string& problem) {
    std::string made = path;
    // A pipe that nobody reads is refused at once rather than waited for; what is written to one that is read waits.
    constexpr int kFlags = O_WRONLY | O_CLOEXEC | O_NONBLOCK;
    auto origin = PosixOutputFile::Origin::kWasThere;
    int descriptor = ::open(path.c_str(), kFlags);
    if (descriptor < 0 && errno == ENOENT) {
        origin = PosixOutputFile::Origin::kMade;
        // A link that leads to no file yet would be taken for one that is there.
        made = FollowLinks(path);
        descriptor = ::open(made.c_str(), kFlags | O_CREAT | O_EXCL, kNewFileMode);
    }
    FileDescriptor file(descriptor);
    struct stat status {};
    if (!file.IsOpen() || ::fstat(file.Get(), &status) != 0 || ::fcntl(file.Get(), F_SETFL, 0) != 0) {
        problem = ReasonOf(errno);
        return nullptr;
    }
    const auto kind = S_ISREG(status.st_mode) ? PosixOutputFile::Kind::kRegular : PosixOutputFile::Kind::kStream;
    return std::make_unique<PosixOutputFile>(std::move(file), std::move(made), origin, kind);
}

std::unique_ptr<OutputFile> OpenNewPosixOutput(const std::string& path, std::string& problem) {
    FileDescriptor file(::open(path.c_str(), O_WRONLY | O_CLOEXEC | O_CREAT | O_EXCL, kNewFileMode));
    if (!file.IsOpen()) {
        if (errno != EEXIST) problem = ReasonOf(errno);
        return nullptr;
    }
    return std::make_unique<PosixOutputFile>(std::move(file), path, PosixOutputFile::Origin::kMade,
                                             PosixOutputFile::Kind::kRegular);
}

}  // namespace host
