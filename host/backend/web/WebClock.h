#pragma once

#include <emscripten.h>

#include "backend/Clock.h"

namespace host {

/// The browser's monotonic clock, which may be coarser than a microsecond.
class WebClock final : public Clock {
public:
    [[nodiscard]] Microseconds Now() const noexcept override {
        return static_cast<Microseconds>((emscripten_get_now() - start_) * kMicrosecondsPerMillisecond);
    }
    [[nodiscard]] std::tm LocalTime() const override {
        const std::time_t now = std::time(nullptr);
        std::tm local{};
        ::localtime_r(&now, &local);
        return local;
    }

private:
    double start_ = emscripten_get_now();  ///< milliseconds
};

}  // namespace host
