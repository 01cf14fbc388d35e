#pragma once

#include <cstdint>
#include <ctime>

namespace host {

/// Microseconds on a back end's monotonic clock.
using Microseconds = std::int64_t;

inline constexpr Microseconds kMicrosecondsPerMillisecond = 1000;
inline constexpr Microseconds kMicrosecondsPerSecond = 1'000'000;

/// The time that everything above the seam lives by. Any thread may ask; in a virtual clock only the UI thread moves
/// it.
class Clock {
public:
    virtual ~Clock() = default;

    /// Microseconds since the back end was made; never goes back.
    [[nodiscard]] virtual Microseconds Now() const noexcept = 0;
    /// The calendar's time where the user is, for the names of files. UI thread.
    [[nodiscard]] virtual std::tm LocalTime() const = 0;
};

}  // namespace host
