#pragma once

#include "backend/Clock.h"

namespace host {

/// A clock that stands still until the loop driver moves it on. The UI thread moves it, and asks it alone.
class VirtualClock final : public Clock {
public:
    [[nodiscard]] Microseconds Now() const noexcept override { return now_; }
    /// The clock's own time as of 1970-01-01 00:00, so that the same performance gives files of the same names.
    [[nodiscard]] std::tm LocalTime() const override {
        const auto seconds = static_cast<std::time_t>(now_ / kMicrosecondsPerSecond);
        std::tm local{};
        ::gmtime_r(&seconds, &local);
        return local;
    }
    /// A time that has passed already is passed over.
    void AdvanceTo(Microseconds time) noexcept { now_ = time > now_ ? time : now_; }

private:
    Microseconds now_ = 0;
};

}  // namespace host
