#pragma once

#include "Tizen/Base/Types.h"

namespace Tizen {
namespace Graphics {

/// A colour of 8 bits a channel; alpha 255 is opaque. Opaque black unless said otherwise.
class Color {
public:
    constexpr Color() = default;
    constexpr Color(byte red, byte green, byte blue, byte alpha = kOpaque)
        : red_(red), green_(green), blue_(blue), alpha_(alpha) {}

    constexpr byte GetRed() const { return red_; }
    constexpr byte GetGreen() const { return green_; }
    constexpr byte GetBlue() const { return blue_; }
    constexpr byte GetAlpha() const { return alpha_; }

    constexpr void SetRed(byte red) { red_ = red; }
    constexpr void SetGreen(byte green) { green_ = green; }
    constexpr void SetBlue(byte blue) { blue_ = blue; }
    constexpr void SetAlpha(byte alpha) { alpha_ = alpha; }

    friend constexpr bool operator==(const Color&, const Color&) = default;

private:
    static constexpr byte kOpaque = 255;

    byte red_ = 0;
    byte green_ = 0;
    byte blue_ = 0;
    byte alpha_ = kOpaque;
};

}  // namespace Graphics
}  // namespace Tizen
