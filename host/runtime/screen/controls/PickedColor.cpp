#include "runtime/screen/controls/PickedColor.h"

#include <algorithm>
#include <cmath>

namespace host {

namespace {

constexpr int kMost = 255;
constexpr double kHueOfGreen = 2;
constexpr double kHueOfBlue = 4;

std::uint8_t Byte(double part) {
    return static_cast<std::uint8_t>(std::lround(part * kMost));
}

}  // namespace

void PickedColor::Set(Rgba color) {
    color_ = color;
    // Alvy Ray Smith, "Color Gamut Transform Pairs", SIGGRAPH 1978: the hexcone model, RGB to HSV.
    const int most = std::max({color.red, color.green, color.blue});
    const int least = std::min({color.red, color.green, color.blue});
    brightness_ = static_cast<double>(most) / kMost;
    if (most == 0) return;
    const double span = most - least;
    saturation_ = span / most;
    if (most == least) return;
    if (most == color.red) {
        hue_ = (color.green - color.blue) / span;
        if (hue_ < 0) hue_ += kHueEnd;
    } else if (most == color.green) {
        hue_ = kHueOfGreen + (color.blue - color.red) / span;
    } else {
        hue_ = kHueOfBlue + (color.red - color.green) / span;
    }
}

void PickedColor::SetHueAndSaturation(double hue, double saturation) {
    hue_ = std::clamp(hue, 0.0, kHueEnd);
    saturation_ = std::clamp(saturation, 0.0, 1.0);
    if (brightness_ <= 0) brightness_ = 1;
    TakeHsv();
}

void PickedColor::SetBrightness(double brightness) {
    brightness_ = std::clamp(brightness, 0.0, 1.0);
    TakeHsv();
}

void PickedColor::SetChannel(int channel, int value) {
    Rgba color = color_;
    const auto byte = static_cast<std::uint8_t>(std::clamp(value, 0, kMost));
    (channel == 0 ? color.red : channel == 1 ? color.green : color.blue) = byte;
    Set(color);
}

int PickedColor::Channel(int channel) const {
    return channel == 0 ? color_.red : channel == 1 ? color_.green : color_.blue;
}

Rgba PickedColor::FromHsv(double hue, double saturation, double brightness) {
    // Smith's inverse: within each sixth of the hue one channel is the brightest, one the darkest, one runs between.
    const double around = std::fmod(hue, kHueEnd);
    const int part = static_cast<int>(around);
    const double along = around - part;
    const std::uint8_t most = Byte(brightness);
    const std::uint8_t least = Byte(brightness * (1 - saturation));
    const std::uint8_t falling = Byte(brightness * (1 - saturation * along));
    const std::uint8_t rising = Byte(brightness * (1 - saturation * (1 - along)));
    switch (part) {
        case 0:
            return {most, rising, least, kMost};
        case 1:
            return {falling, most, least, kMost};
        case 2:
            return {least, most, rising, kMost};
        case 3:
            return {least, falling, most, kMost};
        case 4:
            return {rising, least, most, kMost};
        default:
            return {most, least, falling, kMost};
    }
}

void PickedColor::TakeHsv() {
    const std::uint8_t alpha = color_.alpha;
    color_ = FromHsv(hue_, saturation_, brightness_);
    color_.alpha = alpha;
}

}  // namespace host
