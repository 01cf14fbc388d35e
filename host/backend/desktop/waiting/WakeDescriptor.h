#pragma once

namespace host {

/// A file descriptor that is readable from a wake until that is taken, for a thread that sleeps in poll.
class WakeDescriptor {
public:
    WakeDescriptor();
    ~WakeDescriptor();
    WakeDescriptor(const WakeDescriptor&) = delete;
    WakeDescriptor& operator=(const WakeDescriptor&) = delete;

    /// False when the process has no descriptor left.
    [[nodiscard]] bool IsOpen() const { return descriptor_ >= 0; }
    [[nodiscard]] int Get() const { return descriptor_; }

    /// Any thread, and signal handlers. Neither blocks nor allocates.
    void Wake() noexcept;
    /// Takes all wakes up to now at once. The sleeping thread.
    void Take() noexcept;

private:
    int descriptor_;
};

}  // namespace host
