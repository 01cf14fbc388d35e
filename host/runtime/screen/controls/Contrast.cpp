#include "runtime/screen/controls/Contrast.h"

#include <algorithm>
#include <cmath>

namespace host {

namespace {

constexpr double kMost = 255;
constexpr Rgba kBlack{0, 0, 0, 255};
constexpr Rgba kWhite{255, 255, 255, 255};

// The constants are those of the guideline's formulas.
double LinearLight(std::uint8_t channel) {
    const double value = channel / kMost;
    return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double RelativeLuminance(Rgba color) {
    return 0.2126 * LinearLight(color.red) + 0.7152 * LinearLight(color.green) + 0.0722 * LinearLight(color.blue);
}

}  // namespace

double ContrastRatio(Rgba left, Rgba right) {
    const auto [darker, lighter] = std::minmax({RelativeLuminance(left), RelativeLuminance(right)});
    return (lighter + 0.05) / (darker + 0.05);
}

Rgba BlackOrWhiteAgainst(Rgba color) {
    return ContrastRatio(color, kBlack) >= ContrastRatio(color, kWhite) ? kBlack : kWhite;
}

}  // namespace host
