#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "backend/Storage.h"
#include "runtime/performance/Performance.h"

namespace host {

/// Reads a performance's text. Null with "NAME:LINE: reason" in `problem` when a line is malformed. Any thread.
[[nodiscard]] std::shared_ptr<const Performance> ParsePerformance(std::string_view text, const std::string& name,
                                                                  std::string& problem);
/// Reads a performance file. Null with one line that names the file in `problem` when that fails. UI thread.
[[nodiscard]] std::shared_ptr<const Performance> LoadPerformance(const Storage& storage, const std::string& path,
                                                                 std::string& problem);

}  // namespace host
