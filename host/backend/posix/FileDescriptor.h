#pragma once

#include <unistd.h>

#include <utility>

namespace host {

/// An open file that is closed at the end of its owner's life.
class FileDescriptor {
public:
    explicit FileDescriptor(int descriptor = kNone) noexcept : descriptor_(descriptor) {}
    FileDescriptor(FileDescriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, kNone)) {}
    FileDescriptor& operator=(FileDescriptor&&) = delete;
    ~FileDescriptor() {
        if (IsOpen()) ::close(descriptor_);
    }

    [[nodiscard]] bool IsOpen() const noexcept { return descriptor_ >= 0; }
    [[nodiscard]] int Get() const noexcept { return descriptor_; }
    /// Closes now; false when the system only now tells that something was not written.
    [[nodiscard]] bool Close() noexcept { return ::close(std::exchange(descriptor_, kNone)) == 0; }

private:
    static constexpr int kNone = -1;

    int descriptor_;
};

}  // namespace host
