#pragma once

#include <string>

#include "backend/Clock.h"
#include "runtime/performance/Performance.h"

namespace host {

/// The line of a performance file, with its end, that the reader makes the same action of: a time of whole microseconds
/// since the start, positions to a thousandth of a pixel.
[[nodiscard]] std::string PerformanceLine(Microseconds time, const PerformanceAction& action);

}  // namespace host
