#include "runtime/Options.h"

#include "runtime/package/Values.h"

namespace host {

std::optional<PixelSize> ParseScreen(std::string_view text) {
    const std::size_t cross = text.find('x');
    if (cross == std::string_view::npos) return std::nullopt;
    const auto width = ParseWhole(text.substr(0, cross), kSmallestScreenSide, kLargestScreenSide);
    const auto height = ParseWhole(text.substr(cross + 1), kSmallestScreenSide, kLargestScreenSide);
    if (!width || !height) return std::nullopt;
    return PixelSize{*width, *height};
}

}  // namespace host
