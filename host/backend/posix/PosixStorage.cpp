#include "backend/posix/PosixStorage.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <string_view>
#include <utility>

#include "backend/posix/FileDescriptor.h"
#include "backend/posix/PosixFiles.h"

namespace host {

namespace {

constexpr mode_t kNewFolderMode = 0700;    // For data, as freedesktop.org's base directories ask for.
constexpr mode_t kUsualFolderMode = 0777;  // Less what the user's mask takes away.
constexpr mode_t kPermissionBits = 07777;
// A file in the making is `.NAME.new-` and six letters of mkstemp's, in the folder of the file that it will replace.
constexpr std::string_view kNewFileMark = ".new-";
constexpr std::string_view kUniquePlace = "XXXXXX";

struct FolderCloser {
    void operator()(DIR* folder) const noexcept { ::closedir(folder); }
};
using FolderHandle = std::unique_ptr<DIR, FolderCloser>;

/// A NUL would cut the path short and name another file.
bool IsPath(const std::string& path) {
    return !path.empty() && path.find('\0') == std::string::npos;
}

std::string NameOf(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

void MakeFolders(const std::string& folder, mode_t mode) {
    for (std::size_t end = folder.find('/', 1); end != std::string::npos; end = folder.find('/', end + 1)) {
        // One that is there already is as good; one that cannot be made shows when the file is to be made in it.
        ::mkdir(folder.substr(0, end).c_str(), mode);
    }
}

/// Removes what writes that were killed have left behind. A file that another process is still writing is locked.
void RemoveLeftovers(const std::string& folder, const std::string& prefix) {
    const FolderHandle entries(::opendir(folder.empty() ? "." : folder.c_str()));
    if (!entries) return;
    while (const dirent* const entry = ::readdir(entries.get())) {
        const std::string_view name = entry->d_name;
        if (name.size() != prefix.size() + kUniquePlace.size() || name.substr(0, prefix.size()) != prefix) continue;
        const std::string path = folder + std::string(name);
        const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
        if (file.IsOpen() && ::flock(file.Get(), LOCK_EX | LOCK_NB) == 0) ::unlink(path.c_str());
    }
}

/// Gives a new file the owner and the permissions of the one that it will replace.
bool CopyAttributes(int file, const struct stat& old) {
    const bool isOwned = old.st_uid == ::geteuid() && old.st_gid == ::getegid();
    // Only the superuser can give files away; another one's file becomes ours then, which is no reason to lose it.
    if (!isOwned && ::fchown(file, old.st_uid, old.st_gid) != 0) errno = 0;
    return ::fchmod(file, old.st_mode & kPermissionBits) == 0;
}

/// Whether `error` says that the file system, or this kind of file on it, knows no locks.
bool MeansNoLocks(int error) {
    return error == ENOLCK || error == EOPNOTSUPP || error == ENOSYS || error == EINVAL || error == EBADF;
}

/// Locks a new file against RemoveLeftovers of other processes. Where the file system knows no locks, theirs cannot
/// take one either, and leave the file alone.
enum class LockOutcome { kLocked, kTakenAway, kFailed };
LockOutcome LockNewFile(int file) {
    if (::flock(file, LOCK_EX | LOCK_NB) != 0) {
        if (errno == EWOULDBLOCK) return LockOutcome::kTakenAway;
        return MeansNoLocks(errno) ? LockOutcome::kLocked : LockOutcome::kFailed;
    }
    struct stat status {};
    if (::fstat(file, &status) != 0) return LockOutcome::kFailed;
    return status.st_nlink == 0 ? LockOutcome::kTakenAway : LockOutcome::kLocked;
}

/// A new file beside the one that it will replace, locked; `path` is its template before and its name afterwards.
FileDescriptor MakeNewFile(std::string& path) {
    // Between the making and the lock, another process can take the file for a leftover. The next one has better luck.
    constexpr int kMostTries = 100;
    const std::string pattern = path;
    for (int tries = 0; tries < kMostTries; ++tries) {
        path = pattern;
        FileDescriptor file(::mkostemp(path.data(), O_CLOEXEC));  // For the user alone.
        if (!file.IsOpen()) return file;
        const LockOutcome outcome = LockNewFile(file.Get());
        if (outcome == LockOutcome::kLocked) return file;
        ::unlink(path.c_str());
        if (outcome == LockOutcome::kFailed) break;
    }
    return FileDescriptor();
}

/// Waits for the lock of a folder, which others hold as long as a write takes. False when one does not give it free,
/// for it was stopped.
bool LockFolder(int folder) {
    constexpr int kMostTries = 2000;
    constexpr timespec kBetweenTries{0, 1'000'000};
    for (int tries = 0; tries < kMostTries; ++tries) {
        if (::flock(folder, LOCK_EX | LOCK_NB) == 0) return true;
        if (errno != EWOULDBLOCK && errno != EINTR) return MeansNoLocks(errno);
        ::nanosleep(&kBetweenTries, nullptr);
    }
    return false;
}

bool WriteAndRename(const std::string& newPath, FileDescriptor file, const std::string& path, const struct stat* old,
                    std::span<const std::byte> content) {
    if (old != nullptr && !CopyAttributes(file.Get(), *old)) return false;
    if (!WriteAll(file.Get(), content)) return false;
    // The content must be on the disk before the name is, else a power cut leaves the name with nothing in it. An empty
    // file in the place of none has nothing to lose.
    const bool isWorthSyncing = old != nullptr || !content.empty();
    if (isWorthSyncing && ::fsync(file.Get()) != 0) return false;
    if (::rename(newPath.c_str(), path.c_str()) != 0) return false;
    // Closed last, since the lock goes with it. All that could be lost has been synced.
    [[maybe_unused]] const bool isClosed = file.Close();
    return true;
}

}  // namespace

PosixStorage::PosixStorage(std::string packageRoot, std::string dataRoot)
    : packageRoot_(std::move(packageRoot)), dataRoot_(std::move(dataRoot)) {
    // A write beyond the user's file size limit shall fail like one to a full disk, not end the program.
    std::signal(SIGXFSZ, SIG_IGN);
}

std::optional<FileStamp> PosixStorage::Stat(const std::string& path) const {
    struct stat status {};
    if (!IsPath(path) || ::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
    constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;
    return FileStamp{static_cast<std::uint64_t>(status.st_size),
                     status.st_mtim.tv_sec * kNanosecondsPerSecond + status.st_mtim.tv_nsec};
}

std::vector<std::string> PosixStorage::List(const std::string& folder) const {
    std::vector<std::string> names;
    const FolderHandle entries(IsPath(folder) ? ::opendir(folder.c_str()) : nullptr);
    if (!entries) return names;
    while (const dirent* const entry = ::readdir(entries.get())) {
        struct stat status {};
        if (::fstatat(::dirfd(entries.get()), entry->d_name, &status, 0) == 0 && S_ISREG(status.st_mode)) {
            names.emplace_back(entry->d_name);
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

ReadOutcome PosixStorage::Read(const std::string& path, std::size_t limit, std::vector<std::byte>& content) const {
    content.clear();
    if (!IsPath(path)) return ReadOutcome::kMissing;
    // Without O_NONBLOCK a pipe in the file's place would keep the program waiting for its writer.
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file.IsOpen()) return errno == ENOENT || errno == ENOTDIR ? ReadOutcome::kMissing : ReadOutcome::kFailed;
    struct stat status {};
    if (::fstat(file.Get(), &status) != 0) return ReadOutcome::kFailed;
    if (!S_ISREG(status.st_mode)) return ReadOutcome::kNotAFile;
    const auto size = static_cast<std::uint64_t>(status.st_size);
    if (size > limit) return ReadOutcome::kTooLarge;

    // One byte more than the size, so that the last read both fills and finds the end.
    std::size_t filled = 0;
    content.resize(static_cast<std::size_t>(size) + 1);
    for (;;) {
        const ssize_t got = ::read(file.Get(), content.data() + filled, content.size() - filled);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) {
            content.clear();
            return ReadOutcome::kFailed;
        }
        if (got == 0) break;
        filled += static_cast<std::size_t>(got);
        if (filled > limit) {
            content.clear();
            return ReadOutcome::kTooLarge;
        }
        if (filled == content.size()) content.resize(content.size() * 2);  // It grows while it is read.
    }
    content.resize(filled);
    return ReadOutcome::kRead;
}

std::unique_ptr<InputFile> PosixStorage::OpenInput(const std::string& path, std::string& problem) const {
    if (IsPath(path)) return OpenPosixInput(path, problem);
    problem = ReasonOf(ReadOutcome::kMissing);
    return nullptr;
}

std::unique_ptr<OutputFile> PosixStorage::OpenOutput(const std::string& path, std::string& problem) {
    if (IsPath(path)) return OpenPosixOutput(path, problem);
    problem = "that is no file name";
    return nullptr;
}

std::unique_ptr<OutputFile> PosixStorage::OpenNewOutput(const std::string& path, std::string& problem) {
    if (IsPath(path)) return OpenNewPosixOutput(path, problem);
    problem = "that is no file name";
    return nullptr;
}

bool PosixStorage::MakeFolder(const std::string& folder) {
    if (!IsPath(folder)) return false;
    MakeFolders(folder + '/', kUsualFolderMode);
    struct stat status {};
    return ::stat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool PosixStorage::Replace(const std::string& path, std::span<const std::byte> content) {
    const std::string target = IsPath(path) ? FollowLinks(path) : std::string();
    const std::string name = NameOf(target);
    if (name.empty()) return false;

    struct stat old {};
    const bool isThere = ::stat(target.c_str(), &old) == 0;
    if (isThere && !S_ISREG(old.st_mode)) return false;
    // A rename needs no permission of the file that it replaces; a file that its user made read-only stays all the
    // same.
    if (isThere && ::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0) return false;

    const std::string folder = FolderOf(target);
    if (!isThere) MakeFolders(folder, kNewFolderMode);
    const std::string prefix = "." + name + std::string(kNewFileMark);
    RemoveLeftovers(folder, prefix);

    std::string newPath = folder + prefix + std::string(kUniquePlace);
    FileDescriptor file = MakeNewFile(newPath);
    if (!file.IsOpen()) return false;
    if (!WriteAndRename(newPath, std::move(file), target, isThere ? &old : nullptr, content)) {
        ::unlink(newPath.c_str());
        return false;
    }
    if (!isThere && content.empty()) return true;
    // The new content is in place now, whether or not the file system can sync a folder.
    const FileDescriptor parent(::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (parent.IsOpen()) ::fsync(parent.Get());
    return true;
}

bool PosixStorage::Update(const std::string& path, std::size_t limit, const Edit& edit) {
    const std::string target = IsPath(path) ? FollowLinks(path) : std::string();
    if (target.empty()) return false;
    const std::string folder = FolderOf(target);
    // The file itself cannot carry the lock: another one is in its place after every write.
    MakeFolders(folder, kNewFolderMode);
    const FileDescriptor locked(::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    // What cannot even be opened shows when the file is to be written.
    if (locked.IsOpen() && !LockFolder(locked.Get())) return false;
    return Storage::Update(path, limit, edit);
}

}  // namespace host
