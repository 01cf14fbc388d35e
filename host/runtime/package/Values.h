#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "backend/Geometry.h"

namespace host {

// The values that the package's files are written in. Each is empty for a text that is not wholly such a value.

/// A decimal number with an optional sign and decimals, whatever the locale.
[[nodiscard]] std::optional<double> ParseNumber(std::string_view text);
/// Digits alone, of a number from `least` to `most`, neither of which is negative.
[[nodiscard]] std::optional<int> ParseWhole(std::string_view text, int least, int most);
/// Numbers with commas between them.
[[nodiscard]] std::optional<std::vector<double>> ParseNumbers(std::string_view text);
/// #RRGGBB, which is opaque, or #RRGGBBAA.
[[nodiscard]] std::optional<Rgba> ParseColor(std::string_view text);

}  // namespace host
