#pragma once

namespace pictures {

/// A colour with its opacity, each channel 0..1.
struct Colour {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;
};

constexpr double kChannelMax = 255.0;
constexpr unsigned kChannelMask = 0xFF;
constexpr unsigned kRedShift = 16;
constexpr unsigned kGreenShift = 8;

/// @param hex 0xRRGGBB.
constexpr Colour Rgb(unsigned hex, double alpha = 1) {
    return {((hex >> kRedShift) & kChannelMask) / kChannelMax, ((hex >> kGreenShift) & kChannelMask) / kChannelMax,
            (hex & kChannelMask) / kChannelMax, alpha};
}

constexpr Colour WithAlpha(Colour colour, double alpha) {
    colour.alpha = alpha;
    return colour;
}

constexpr Colour Mix(const Colour& from, const Colour& to, double share) {
    return {from.red + (to.red - from.red) * share, from.green + (to.green - from.green) * share,
            from.blue + (to.blue - from.blue) * share, from.alpha + (to.alpha - from.alpha) * share};
}

// The instrument wears the colours that a first start shows: a coral clay with honey coloured holes.
inline constexpr Colour kClay = Rgb(0xE2646F);
inline constexpr Colour kClayDeep = Rgb(0xB8404F);
inline constexpr Colour kHoney = Rgb(0xFFC230);
inline constexpr Colour kHoneyDeep = Rgb(0xE08A12);

// Everything written or engraved is ink, everything under it is paper. The layouts use the same two.
inline constexpr Colour kInk = Rgb(0x3A2228);
inline constexpr Colour kPaper = Rgb(0xFFF7EC);
inline constexpr Colour kWhite = Rgb(0xFFFFFF);
inline constexpr Colour kBlack = Rgb(0x000000);

// What lies on the play screen stands on its own plate, because the player may pick any colour beneath it.
inline constexpr Colour kPlate = Rgb(0x2B1A20);
inline constexpr Colour kPlateRing = Rgb(0xFFFFFF, 0.34);
inline constexpr Colour kPlateEdge = Rgb(0x24141A, 0.40);
/// A part of a display that is off; its contrast with the plate is above 3 (guideline 1.4.11 of the W3C).
inline constexpr Colour kUnlit = Rgb(0x7C6A70);

}  // namespace pictures
