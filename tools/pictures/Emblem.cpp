#include "Emblem.h"

#include <cairo-svg.h>

#include <cmath>
#include <numbers>
#include <stdexcept>

namespace pictures {

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kWellAt = 0.40;
constexpr double kWellRadius = 0.275;

/// A finger well filled with honey glaze, as the play screen shows it.
void DrawWell(cairo_t* pen, double x, double y, Detail detail) {
    const double radius = kWellRadius;
    if (detail == Detail::kSmall) {
        Circle(pen, x, y, radius);
        FillWith(pen, kHoney);
        return;
    }
    // The lip: bright where it faces the light from the upper left, dark across.
    const double slant = radius * 0.75;
    Circle(pen, x, y, radius + 0.035);
    FillLinear(pen, x - slant, y - slant, x + slant, y + slant,
               {{0, Rgb(0x9C3040)}, {0.5, Rgb(0xC44A58)}, {1, Rgb(0xFFC2B8)}});
    // The dish: the wall towards the light lies in shade.
    Circle(pen, x, y, radius);
    FillLinear(pen, x - slant, y - slant, x + slant, y + slant,
               {{0, Rgb(0xC87408)}, {0.28, Rgb(0xF0A41C)}, {0.55, kHoney}, {1, Rgb(0xFFDC78)}});
    Circle(pen, x + radius * 0.10, y + radius * 0.10, radius * 0.76);
    FillLinear(pen, x - slant, y - slant, x + slant, y + slant,
               {{0, Rgb(0xF2AC22)}, {0.5, Rgb(0xFFC83E)}, {1, Rgb(0xFFE493)}});
}

// Paper, lighter at the top.
void FillPaper(cairo_t* pen, double top, double bottom) {
    FillLinear(pen, 0, top, 0, bottom, {{0, Rgb(0xFFF6E9)}, {1, Rgb(0xFFCF94)}});
}

// The instrument turned as in the intro, over its shadow, in a square of 1.
void DrawInstrument(cairo_t* pen, Detail detail) {
    constexpr double kTurn = -24 * kPi / 180;
    const double unit = detail == Detail::kFull ? 0.312 : 0.345;
    const auto place = [&](double dx, double dy) {
        cairo_translate(pen, 0.450 + dx, 0.448 + dy);
        cairo_scale(pen, unit, unit);
        cairo_rotate(pen, kTurn);
    };
    if (detail == Detail::kFull) {
        // A soft shadow without a blur: the outline again and again, a little farther away and thinner each time.
        constexpr int kLayers = 14;
        for (int layer = kLayers; layer >= 1; --layer) {
            cairo_save(pen);
            const double share = static_cast<double>(layer) / kLayers;
            place(0.050 * share, 0.066 * share);
            EmblemPath(pen);
            FillWith(pen, Rgb(0x7A2E22, 0.045));
            cairo_restore(pen);
        }
    }
    cairo_save(pen);
    place(0, 0);
    DrawEmblem(pen, detail);
    cairo_restore(pen);
}

void DrawIcon(cairo_t* pen, double size, Detail detail) {
    // A paper plate with the instrument; measures are shares of the icon's width.
    constexpr double kMargin = 0.035;
    constexpr double kCorner = 0.22;
    cairo_scale(pen, size, size);
    const double margin = detail == Detail::kFull ? kMargin : 0;
    RoundedRectangle(pen, margin, margin, 1 - 2 * margin, 1 - 2 * margin, kCorner);
    FillPaper(pen, margin, 1 - margin);
    if (detail == Detail::kFull) {
        RoundedRectangle(pen, margin + 0.004, margin + 0.004, 1 - 2 * margin - 0.008, 1 - 2 * margin - 0.008,
                         kCorner - 0.004);
        SetColour(pen, Rgb(0x8A4A2A, 0.28));
        cairo_set_line_width(pen, 0.008);
        cairo_stroke(pen);
    }
    RoundedRectangle(pen, margin, margin, 1 - 2 * margin, 1 - 2 * margin, kCorner);
    cairo_clip(pen);
    DrawInstrument(pen, detail);
}

}  // namespace

void EmblemPath(cairo_t* pen) {
    constexpr double kNeckFrom = 38 * kPi / 180;
    const double x = std::cos(kNeckFrom);
    const double y = std::sin(kNeckFrom);
    cairo_new_path(pen);
    cairo_arc(pen, 0, 0, 1, kPi - kNeckFrom, 2 * kPi + kNeckFrom);
    cairo_curve_to(pen, x - 0.20, y + 0.255, 0.51, 0.98, 0.465, 1.20);
    cairo_line_to(pen, 0.430, 1.37);
    cairo_curve_to(pen, 0.405, 1.47, 0.36, 1.50, 0.27, 1.50);
    cairo_line_to(pen, -0.27, 1.50);
    cairo_curve_to(pen, -0.36, 1.50, -0.405, 1.47, -0.430, 1.37);
    cairo_line_to(pen, -0.465, 1.20);
    cairo_curve_to(pen, -0.51, 0.98, -x + 0.20, y + 0.255, -x, y);
    cairo_close_path(pen);
}

void DrawEmblem(cairo_t* pen, Detail detail) {
    EmblemPath(pen);
    if (detail == Detail::kSmall) {
        FillWith(pen, kClay);
    } else {
        FillRadial(pen, -0.30, -0.40, 2.1,
                   {{0, Rgb(0xF58A88)}, {0.30, Rgb(0xEA6C72)}, {0.62, Rgb(0xD85862)}, {1, Rgb(0xB44050)}});
        // The light's reflection on the shoulder.
        cairo_save(pen);
        cairo_translate(pen, -0.16, -0.52);
        cairo_rotate(pen, 0.30);
        cairo_scale(pen, 0.62, 0.36);
        Circle(pen, 0, 0, 1);
        FillRadial(pen, 0, 0, 1,
                   {{0, WithAlpha(kWhite, 0.42)}, {0.5, WithAlpha(kWhite, 0.16)}, {1, WithAlpha(kWhite, 0)}});
        cairo_restore(pen);
        // The mouthpiece is flatter than the body: light along its upper left edge, and the windway's slot at its end.
        cairo_move_to(pen, -0.452, 1.08);
        cairo_curve_to(pen, -0.418, 1.16, -0.395, 1.26, -0.370, 1.36);
        StrokeRound(pen, 0.030, WithAlpha(kWhite, 0.30));
        RoundedRectangle(pen, -0.20, 1.34, 0.40, 0.065, 0.03);
        FillWith(pen, Rgb(0x6A1E2C, 0.85));
        RoundedRectangle(pen, -0.20, 1.385, 0.40, 0.03, 0.015);
        FillWith(pen, Rgb(0xFFB3AC, 0.55));
    }
    for (const double x : {-kWellAt, kWellAt}) {
        for (const double y : {-kWellAt, kWellAt}) {
            DrawWell(pen, x, y, detail);
        }
    }
}

void DrawWindowIcon(const std::string& folder) {
    constexpr int kSize = 128;  // The desktops scale it down.
    Picture icon(kSize, kSize, 1);
    DrawIcon(icon.Pen(), kSize, Detail::kFull);
    icon.SavePng(folder + "/app_icon.png");
}

void DrawPageIcons(const std::string& folder) {
    for (const int size : {192, 512}) {
        Picture icon(size, size, 1);
        DrawIcon(icon.Pen(), size, Detail::kFull);
        icon.SavePng(folder + "/icon-" + std::to_string(size) + ".png");
    }
    constexpr int kSize = 512;
    // W3C, "Web Application Manifest", section "Icon masks and safe zone": what must be seen lies within a circle of 40
    // % of the width around the middle, and the instrument's tip reaches 46 % from it.
    constexpr double kShare = 0.8;
    Picture icon(kSize, kSize, 1);
    cairo_t* pen = icon.Pen();
    cairo_scale(pen, kSize, kSize);
    cairo_rectangle(pen, 0, 0, 1, 1);
    FillPaper(pen, 0, 1);
    cairo_translate(pen, (1 - kShare) / 2, (1 - kShare) / 2);
    cairo_scale(pen, kShare, kShare);
    DrawInstrument(pen, Detail::kFull);
    icon.SavePng(folder + "/icon-maskable-512.png");
}

void DrawApplicationIcon(const std::string& folder) {
    constexpr int kSizes[] = {16, 24, 32, 48, 64, 128, 256, 512};
    constexpr int kSmallBelow = 40;
    constexpr double kSvgSize = 512;
    for (const int size : kSizes) {
        Picture icon(size, size, 1);
        DrawIcon(icon.Pen(), size, size < kSmallBelow ? Detail::kSmall : Detail::kFull);
        icon.SavePng(folder + "/brevant-" + std::to_string(size) + ".png");
    }
    const std::string path = folder + "/brevant.svg";
    cairo_surface_t* surface = cairo_svg_surface_create(path.c_str(), kSvgSize, kSvgSize);
    cairo_svg_surface_set_document_unit(surface, CAIRO_SVG_UNIT_PX);
    cairo_t* pen = cairo_create(surface);
    DrawIcon(pen, kSvgSize, Detail::kFull);
    cairo_destroy(pen);
    cairo_surface_finish(surface);
    const cairo_status_t status = cairo_surface_status(surface);
    cairo_surface_destroy(surface);
    if (status != CAIRO_STATUS_SUCCESS) {
        throw std::runtime_error(path + ": " + cairo_status_to_string(status));
    }
}

}  // namespace pictures
