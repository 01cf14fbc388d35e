#pragma once

#include <chrono>

#include "backend/Clock.h"

namespace host {

/// The machine's own time, which no setting of the calendar moves.
class MonotonicClock final : public Clock {
public:
    [[nodiscard]] Microseconds Now() const noexcept override {
        return std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - start_).count();
    }
    [[nodiscard]] std::tm LocalTime() const override {
        const std::time_t now = std::time(nullptr);
        std::tm local{};
        ::localtime_r(&now, &local);
        return local;
    }

private:
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

}  // namespace host
