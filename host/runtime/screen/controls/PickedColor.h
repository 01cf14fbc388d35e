#pragma once

#include "backend/Geometry.h"

namespace host {

/// A colour as one picks it: exact in its channels, and with the hue, saturation and brightness under the fingers. A
/// grey has no hue and black no saturation of its own; they keep what they had, so that moving the brightness down and
/// up again gives the same colour. A plain value.
class PickedColor {
public:
    static constexpr double kHueEnd = 6;  ///< hue runs 0..6, one for each of the six parts from red over green and blue
    static constexpr int kChannels = 3;   ///< red, green, blue

    /// Alpha stays with the colour from here on.
    void Set(Rgba color);
    /// 0..kHueEnd and 0..1; others go to the nearer end. Black, on which none of it would be seen, becomes bright.
    void SetHueAndSaturation(double hue, double saturation);
    /// 0..1; others go to the nearer end.
    void SetBrightness(double brightness);
    /// Values outside of 0..255 go to the nearer end.
    void SetChannel(int channel, int value);

    [[nodiscard]] Rgba Color() const { return color_; }
    [[nodiscard]] int Channel(int channel) const;
    [[nodiscard]] double Hue() const { return hue_; }
    [[nodiscard]] double Saturation() const { return saturation_; }
    [[nodiscard]] double Brightness() const { return brightness_; }

    /// The opaque colour of a hue (0..kHueEnd), saturation and brightness (0..1).
    [[nodiscard]] static Rgba FromHsv(double hue, double saturation, double brightness);

private:
    void TakeHsv();

    Rgba color_{0, 0, 0, 255};
    double hue_ = 0;
    double saturation_ = 0;
    double brightness_ = 0;
};

}  // namespace host
