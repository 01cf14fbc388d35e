// Preloaded into the program, it lets the N-th call of one kind fail, or kills the program there. Only calls that
// concern files in one folder count, and only memory that C++ asks for, so that fonts and libraries are left in peace.
// The environment says what to do:
//   BREVANT_FAULT         CALL:N:FAULT, CALL as named below, FAULT an errno's number, "short" or "kill"
//   BREVANT_FAULT_FOLDER  the folder, with a separator at its end
//   BREVANT_FAULT_STRUCK  a file that is made when the call has come

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string_view>

namespace {

enum class Fault { kNone, kError, kShort };

template <typename Function>
Function* Next(const char* name) {
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

bool IsInFolder(const char* path) {
    const char* folder = std::getenv("BREVANT_FAULT_FOLDER");
    return folder != nullptr && path != nullptr && std::strncmp(path, folder, std::strlen(folder)) == 0;
}

bool IsInFolder(int file) {
    std::array<char, 64> link{};
    std::array<char, PATH_MAX> path{};
    std::snprintf(link.data(), link.size(), "/proc/self/fd/%d", file);
    if (::readlink(link.data(), path.data(), path.size() - 2) <= 0) return false;
    // The folder itself counts, too, when it is locked or synced.
    return IsInFolder(path.data()) || IsInFolder(std::strcat(path.data(), "/"));
}

// What is to happen to this call; sets errno where it fails.
Fault Strike(std::string_view call) {
    static std::atomic<long> count = 0;
    const char* wish = std::getenv("BREVANT_FAULT");
    if (wish == nullptr || std::strncmp(wish, call.data(), call.size()) != 0 || wish[call.size()] != ':') {
        return Fault::kNone;
    }
    char* end = nullptr;
    if (++count != std::strtol(wish + call.size() + 1, &end, 10)) return Fault::kNone;
    ::close(Next<int(const char*, int, ...)>("open")(std::getenv("BREVANT_FAULT_STRUCK"), O_WRONLY | O_CREAT, 0600));
    const std::string_view fault(end + 1);
    if (fault == "kill") std::raise(SIGKILL);
    if (fault == "short") return Fault::kShort;
    errno = static_cast<int>(std::strtol(end + 1, nullptr, 10));
    return Fault::kError;
}

template <typename Where>
Fault StrikeAt(const char* call, Where where) {
    return IsInFolder(where) ? Strike(call) : Fault::kNone;
}

// A short write takes half of what it is given.
std::size_t Cut(Fault fault, std::size_t count) {
    return fault == Fault::kShort ? (count + 1) / 2 : count;
}

}  // namespace

extern "C" {

int open(const char* path, int flags, ...) {
    va_list rest;
    va_start(rest, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    if (StrikeAt("open", path) == Fault::kError) return -1;
    return Next<int(const char*, int, ...)>("open")(path, flags, mode);
}

int mkostemp(char* path, int flags) {
    return StrikeAt("open", path) == Fault::kError ? -1 : Next<int(char*, int)>("mkostemp")(path, flags);
}

ssize_t pread(int file, void* bytes, size_t count, off_t offset) {
    if (StrikeAt("read", file) == Fault::kError) return -1;
    return Next<ssize_t(int, void*, size_t, off_t)>("pread")(file, bytes, count, offset);
}

// The names that tell the width of an offset mean the same: it has 64 bits anyway.
static_assert(sizeof(off_t) == sizeof(off64_t));
int open64(const char* path, int flags, ...) __attribute__((alias("open")));
int mkostemp64(char* path, int flags) __attribute__((alias("mkostemp")));
ssize_t pread64(int file, void* bytes, size_t count, off_t offset) __attribute__((alias("pread")));

ssize_t read(int file, void* bytes, size_t count) {
    if (StrikeAt("read", file) == Fault::kError) return -1;
    return Next<ssize_t(int, void*, size_t)>("read")(file, bytes, count);
}

ssize_t write(int file, const void* bytes, size_t count) {
    const Fault fault = StrikeAt("write", file);
    if (fault == Fault::kError) return -1;
    return Next<ssize_t(int, const void*, size_t)>("write")(file, bytes, Cut(fault, count));
}

ssize_t pwrite(int file, const void* bytes, size_t count, off_t offset) {
    const Fault fault = StrikeAt("write", file);
    if (fault == Fault::kError) return -1;
    return Next<ssize_t(int, const void*, size_t, off_t)>("pwrite")(file, bytes, Cut(fault, count), offset);
}

int fsync(int file) {
    return StrikeAt("fsync", file) == Fault::kError ? -1 : Next<int(int)>("fsync")(file);
}

int rename(const char* from, const char* to) {
    return StrikeAt("rename", to) == Fault::kError ? -1 : Next<int(const char*, const char*)>("rename")(from, to);
}

int mkdir(const char* path, mode_t mode) {
    return StrikeAt("mkdir", path) == Fault::kError ? -1 : Next<int(const char*, mode_t)>("mkdir")(path, mode);
}

int flock(int file, int operation) {
    return StrikeAt("flock", file) == Fault::kError ? -1 : Next<int(int, int)>("flock")(file, operation);
}

int close(int file) {
    const Fault fault = StrikeAt("close", file);
    const int error = errno;
    const int result = Next<int(int)>("close")(file);
    if (fault != Fault::kError) return result;
    errno = error;
    return -1;
}
}

// As the language's own: what was set for a lack of memory is called, and may not return without a remedy. Calls count
// from the moment on when something is set.
void* operator new(std::size_t bytes) {
    for (;;) {
        const std::new_handler handler = std::get_new_handler();
        const bool isRefused = handler != nullptr && Strike("new") == Fault::kError;
        void* const memory = isRefused ? nullptr : std::malloc(bytes == 0 ? 1 : bytes);
        if (memory != nullptr) return memory;
        if (handler == nullptr) throw std::bad_alloc();
        handler();
    }
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
