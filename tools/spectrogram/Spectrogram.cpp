// Draws a part of a recording as a picture: time to the right, 1 ms a pixel; frequency upwards, 20 Hz a pixel, to 6
// kHz; level by colour, in steps of 6 dB below the loudest of the picture, so that recordings of other volumes compare
// and the file stays small. Ticks stand at every 100 ms and every 1 kHz.
//
//   brevant_spectrogram IN.wav FROM_MS TO_MS OUT.png

#include <cairo.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "measure/Fourier.h"
#include "measure/SoundFile.h"

namespace {

using measure::Sound;

constexpr int kHertzAPixel = 20;
constexpr int kHighestHertz = 6000;
constexpr int kTickPixels = 6;
constexpr int kTickMs = 100;
constexpr int kTickHertz = 1000;
constexpr double kMsASecond = 1000;

// Long enough to part the partials of the lowest tone, short enough to show an attack.
constexpr std::size_t kWindow = 2048;
constexpr std::size_t kTransform = 4096;

constexpr double kStepDb = 6;

// The level of each of the transform's lower frequencies around a moment, in decibels of a full sine.
std::vector<double> LevelsAt(const Sound& sound, double ms) {
    std::vector<measure::Complex> x(kTransform);
    const auto middle = static_cast<std::ptrdiff_t>(ms * sound.rate / kMsASecond);
    for (std::size_t i = 0; i < kWindow; ++i) {
        const std::ptrdiff_t at = middle - static_cast<std::ptrdiff_t>(kWindow / 2) + static_cast<std::ptrdiff_t>(i);
        if (at < 0 || at >= static_cast<std::ptrdiff_t>(sound.samples.size())) continue;
        x[i] = measure::Hann(i, kWindow) * static_cast<double>(sound.samples[static_cast<std::size_t>(at)]);
    }
    measure::Transform(x);
    std::vector<double> levels;
    constexpr double kSilent = 1e-10;
    for (std::size_t i = 0; i < kTransform / 2; ++i) {
        levels.push_back(20 * std::log10(std::abs(x[i]) * 4 / kWindow + kSilent));
    }
    return levels;
}

// By how far it lies below the loudest, from its colour to silence's.
std::uint32_t ColourOf(double decibels) {
    constexpr std::array<std::uint32_t, 16> kColours = {0xFFF7E6, 0xFFE9B0, 0xFFD97A, 0xFFC24A, 0xF9A535, 0xEE8433,
                                                        0xDD653B, 0xC44A47, 0xA53455, 0x852462, 0x66196A, 0x4A126A,
                                                        0x330E5E, 0x200B48, 0x11072F, 0x06031A};
    const double step = std::clamp(decibels / kStepDb, 0.0, static_cast<double>(kColours.size() - 1));
    return kColours[static_cast<std::size_t>(step)];
}

void Draw(const Sound& sound, int fromMs, int toMs, const std::string& path) {
    const int width = toMs - fromMs;
    constexpr int kHeight = kHighestHertz / kHertzAPixel;
    const std::unique_ptr<cairo_surface_t, void (*)(cairo_surface_t*)> surface(
        cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, kHeight), cairo_surface_destroy);
    unsigned char* const pixels = cairo_image_surface_get_data(surface.get());
    const int stride = cairo_image_surface_get_stride(surface.get());
    cairo_surface_flush(surface.get());
    std::vector<std::vector<double>> columns;
    double loudest = -1000;
    for (int x = 0; x < width; ++x) {
        columns.push_back(LevelsAt(sound, fromMs + x));
        loudest = std::max(loudest, *std::max_element(columns.back().begin(), columns.back().end()));
    }
    constexpr std::uint32_t kTickColour = 0xFFFFFF;
    for (int x = 0; x < width; ++x) {
        const std::vector<double>& levels = columns[static_cast<std::size_t>(x)];
        for (int y = 0; y < kHeight; ++y) {
            const int hertz = (kHeight - 1 - y) * kHertzAPixel;
            const bool isTimeTick = x % kTickMs == 0 && y >= kHeight - kTickPixels;
            const bool isPitchTick = hertz % kTickHertz == 0 && x < kTickPixels;
            const auto bin = static_cast<std::size_t>(static_cast<double>(hertz) * kTransform / sound.rate);
            const std::uint32_t colour = isTimeTick || isPitchTick ? kTickColour : ColourOf(loudest - levels[bin]);
            reinterpret_cast<std::uint32_t*>(pixels + std::ptrdiff_t{y} * stride)[x] = colour;
        }
    }
    cairo_surface_mark_dirty(surface.get());
    if (cairo_surface_write_to_png(surface.get(), path.c_str()) != CAIRO_STATUS_SUCCESS) {
        throw std::runtime_error(path + ": it cannot be written");
    }
}

int ToMs(std::string_view text) {
    int ms = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), ms);
    if (error != std::errc{} || end != text.data() + text.size() || ms < 0) {
        throw std::runtime_error(std::string(text) + " is no time in milliseconds");
    }
    return ms;
}

}  // namespace

int main(int argc, char* argv[]) {
    constexpr int kArguments = 5;
    if (argc != kArguments) {
        std::fprintf(stderr, "usage: brevant_spectrogram IN.wav FROM_MS TO_MS OUT.png\n");
        return 2;
    }
    try {
        const int from = ToMs(argv[2]);
        const int to = ToMs(argv[3]);
        constexpr int kLongestMs = 10000;
        if (to <= from || to - from > kLongestMs) throw std::runtime_error("the time must be 1 to 10000 ms long");
        Draw(measure::ReadSound(argv[1]), from, to, argv[4]);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "brevant_spectrogram: %s\n", error.what());
        return 1;
    }
    return 0;
}
