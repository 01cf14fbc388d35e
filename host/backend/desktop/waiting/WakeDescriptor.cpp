#include "backend/desktop/waiting/WakeDescriptor.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>

namespace host {

WakeDescriptor::WakeDescriptor() : descriptor_(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {}

WakeDescriptor::~WakeDescriptor() {
    if (IsOpen()) close(descriptor_);
}

void WakeDescriptor::Wake() noexcept {
    const std::uint64_t one = 1;
    // The only other failure is a full counter: a wake is pending already.
    while (write(descriptor_, &one, sizeof one) < 0 && errno == EINTR) {
    }
}

void WakeDescriptor::Take() noexcept {
    std::uint64_t count = 0;
    while (read(descriptor_, &count, sizeof count) < 0 && errno == EINTR) {
    }
}

}  // namespace host
