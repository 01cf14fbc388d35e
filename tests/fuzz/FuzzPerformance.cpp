// A performance file of any bytes is read whole or refused with its line.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "Require.h"
#include "runtime/performance/Performance.h"
#include "runtime/performance/PerformanceReader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    std::string problem;
    const auto performance = host::ParsePerformance(text, "tune", problem);
    if (performance == nullptr) {
        Require(problem.rfind("tune:", 0) == 0, "a refusal names the file and the line");
        return 0;
    }
    Require(problem.empty(), "what is read is not refused");
    host::Microseconds time = 0;
    int line = 0;
    for (const auto& step : performance->Steps()) {
        Require(step.time >= time && step.line > line, "steps are in the order of their times and lines");
        time = step.time;
        line = step.line;
    }
    return 0;
}
