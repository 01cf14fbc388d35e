#include "Breath.h"

#include "Plate.h"

#include <cmath>
#include <numbers>

namespace pictures {

namespace {

constexpr double kPi = std::numbers::pi;

/// A breath of air: three streams that curl at their ends, in a field 60 units square around 0,0.
void DrawBreathSign(cairo_t* pen, double width, const Colour& colour) {
    cairo_new_path(pen);
    Line(pen, -27, -7.5, -3, -7.5);
    cairo_arc_negative(pen, -3, -14.5, 7, kPi / 2, -kPi * 0.80);
    StrokeRound(pen, width, colour);
    Line(pen, -21, 3.5, 18, 3.5);
    cairo_arc_negative(pen, 18, -4.5, 8, kPi / 2, -kPi * 0.75);
    StrokeRound(pen, width, colour);
    Line(pen, -27, 14.5, 3, 14.5);
    cairo_arc(pen, 3, 21, 6.5, -kPi / 2, kPi * 0.75);
    StrokeRound(pen, width, colour);
}

}  // namespace

void DrawBreathMeter(const std::string& folder) {
    // The sign lies on the meter's left end.
    Picture sign(kButton, kButton);
    cairo_translate(sign.Pen(), kCentre, kCentre);
    DrawBreathSign(sign.Pen(), kSignWidth - 1, kWhite);
    sign.SavePng(folder + "/icon_volume.png");

    constexpr double kWidth = 560;
    constexpr double kHeight = kButton;
    Picture plate(kWidth, kHeight);
    DrawLongPlate(plate.Pen(), kWidth, kHeight);
    plate.SavePng(folder + "/strip_plate.png");

    constexpr int kSteps = 15;
    // The play screen shows (peak - 127) / 8 bars, and a breath sounds from the peak 153 upward. That is a quarter of
    // the way through the peaks that light three bars, so the colour changes there, within the third bar. Above step 12
    // the microphone is close to its limit.
    constexpr int kSilentPeak = 127;
    constexpr int kPeaksPerStep = 8;
    constexpr int kFirstSoundingPeak = 153;
    constexpr int kFirstSounding = (kFirstSoundingPeak - kSilentPeak) / kPeaksPerStep;
    constexpr double kSilentShare =
        static_cast<double>((kFirstSoundingPeak - kSilentPeak) % kPeaksPerStep) / kPeaksPerStep;
    const Colour silent = Rgb(0xBFE3EA);
    constexpr int kFirstLoud = 13;
    constexpr double kBegin = 100;
    constexpr double kEnd = kWidth - 36;
    constexpr double kBar = 18;
    constexpr double kLowest = 20;
    constexpr double kTallest = 62;
    const double pitch = (kEnd - kBegin - kBar) / (kSteps - 1);
    for (int step = 0; step <= kSteps; ++step) {
        Picture picture(kWidth, kHeight);
        cairo_t* pen = picture.Pen();
        DrawLongPlate(pen, kWidth, kHeight);
        for (int bar = 1; bar <= kSteps; ++bar) {
            const double x = kBegin + (bar - 1) * pitch;
            // The bars swell like a breath: quickly at first, then level.
            const double share = std::sin((bar - 1.0) / (kSteps - 1) * kPi / 2);
            const double height = kLowest + (kTallest - kLowest) * share;
            const double y = (kHeight - height) / 2;
            const Colour lit = bar < kFirstSounding ? silent
                               : bar < kFirstLoud   ? Mix(kHoney, Rgb(0xFFDE7A), (bar - kFirstSounding) / 10.0)
                                                    : Rgb(0xFF7A66);
            RoundedRectangle(pen, x, y, kBar, height, kBar / 2);
            FillWith(pen, bar <= step ? lit : kUnlit);
            if (bar != kFirstSounding || bar > step) continue;
            cairo_save(pen);
            cairo_rectangle(pen, x, y, kBar * kSilentShare, height);
            cairo_clip(pen);
            RoundedRectangle(pen, x, y, kBar, height, kBar / 2);
            FillWith(pen, silent);
            cairo_restore(pen);
        }
        picture.SavePng(folder + "/volume_" + std::to_string(step) + ".png");
    }
}

void DrawBlowHint(const std::string& folder) {
    constexpr double kWidth = 328;
    constexpr double kHeight = 112;
    constexpr double kMiddle = 63;
    // Drawn a little larger than it is shown, where it has the buttons' height.
    constexpr double kShown = kButton / kHeight;
    Picture picture(kWidth * kShown, kButton);
    cairo_t* pen = picture.Pen();
    cairo_scale(pen, kShown, kShown);
    const auto plate = [&](double inset) {
        RoundedRectangle(pen, inset, inset, kWidth - 2 * inset, kHeight - 2 * inset, kHeight / 2);
    };
    plate(2);
    FillWith(pen, kPaper);

    // A face in profile, its lips pursed, cut off by the plate's round end.
    cairo_save(pen);
    plate(4);
    cairo_clip(pen);
    cairo_move_to(pen, 0, 0);
    cairo_line_to(pen, 66, 0);
    cairo_curve_to(pen, 69, 12, 68, 20, 71, 27);
    cairo_curve_to(pen, 75, 36, 84, 43, 87, 48);
    cairo_curve_to(pen, 88, 52, 81, 53, 78, 54);
    cairo_curve_to(pen, 79, 56, 86, 56, 88, 60);
    cairo_curve_to(pen, 88, 62, 85, 62.5, 83, 63);
    cairo_curve_to(pen, 86, 64, 88, 66, 86, 69);
    cairo_curve_to(pen, 84, 72, 79, 71, 77, 75);
    cairo_curve_to(pen, 76, 79, 80, 83, 78, 88);
    cairo_curve_to(pen, 74, 96, 60, 97, 52, 99);
    cairo_line_to(pen, 46, kHeight);
    cairo_line_to(pen, 0, kHeight);
    cairo_close_path(pen);
    FillWith(pen, kInk);
    cairo_restore(pen);

    // The breath, widening on its way to the microphone.
    for (const double offset : {-1.0, 0.0, 1.0}) {
        Line(pen, 106, kMiddle + offset * 8, 152, kMiddle + offset * 17);
        StrokeRound(pen, 6.5, kClay);
        Line(pen, 170, kMiddle + offset * 20.5, 184, kMiddle + offset * 23.2);
        StrokeRound(pen, 6.5, kClay);
    }

    // The phone lies on its side, the microphone in its lower edge turned to the lips.
    constexpr double kPhoneX = 202;
    constexpr double kPhoneY = 33;
    constexpr double kPhoneWidth = 98;
    constexpr double kPhoneHeight = 60;
    RoundedRectangle(pen, kPhoneX, kPhoneY, kPhoneWidth, kPhoneHeight, 11);
    FillWith(pen, kInk);
    RoundedRectangle(pen, kPhoneX + 15, kPhoneY + 5, kPhoneWidth - 22, kPhoneHeight - 10, 6);
    FillWith(pen, kClay);
    Line(pen, kPhoneX + 7.5, kMiddle - 8, kPhoneX + 7.5, kMiddle + 8);
    StrokeRound(pen, 5, kHoney);
    for (const double x : {kPhoneX + 36, kPhoneX + 70}) {
        for (const double y : {kMiddle - 12, kMiddle + 12}) {
            Circle(pen, x, y, 8);
            FillWith(pen, kHoney);
        }
    }
    plate(3);
    StrokeRound(pen, kRingWidth + 1, kInk);
    picture.SavePng(folder + "/icon_blow.png");
}

}  // namespace pictures
