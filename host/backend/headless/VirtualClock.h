#pragma once

#include "backend/Clock.h"

namespace host {

/// A clock that stands still until the loop driver moves it on. The UI thread moves it, and asks it alone.
class VirtualClock final : public Clock {
public:
    [[nodiscard]] Microseconds Now() const noexcept override { return now_; }
    /// A time that has passed already is passed over.
    void AdvanceTo(Microseconds time) noexcept { now_ = time > now_ ? time : now_; }

private:
    Microseconds now_ = 0;
};

}  // namespace host
