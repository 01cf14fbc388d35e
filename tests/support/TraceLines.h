#pragma once

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

using TraceLines = std::vector<nlohmann::json>;

/// The lines of a trace's text; each must be a JSON object with "ms" and "what".
inline TraceLines ReadTraceLines(const std::string& text) {
    TraceLines trace;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        trace.push_back(nlohmann::json::parse(line));
        EXPECT_TRUE(trace.back().contains("ms") && trace.back().contains("what")) << line;
    }
    return trace;
}
