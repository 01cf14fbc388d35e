#include "FingerWell.h"

#include "Drawing.h"

#include <numbers>

namespace pictures {

namespace {

constexpr double kPi = std::numbers::pi;

// The hole's circles in the play screen's layout: 216 units wide open, 130 % of that covered.
constexpr double kSize = 320;
constexpr double kMiddle = kSize / 2;
constexpr double kOpen = 108;
constexpr double kCovered = 140;
constexpr double kReach = kSize / 2;

void ClipToRing(cairo_t* pen, double inner, double outer) {
    cairo_new_path(pen);
    Circle(pen, kMiddle, kMiddle, outer);
    cairo_new_sub_path(pen);
    cairo_arc_negative(pen, kMiddle, kMiddle, inner, 2 * kPi, 0);
    cairo_close_path(pen);
    cairo_clip(pen);
}

/// What a circle of @p outer leaves uncovered of it when a circle of @p inner lies @p shift to its lower right.
Shape Crescent(double outer, double inner, double shift) {
    return [=](cairo_t* mask) {
        cairo_set_fill_rule(mask, CAIRO_FILL_RULE_EVEN_ODD);
        Circle(mask, kMiddle, kMiddle, outer);
        Circle(mask, kMiddle + shift, kMiddle + shift, inner);
    };
}

/// The lip stands out of the clay: it casts a shadow away from the light, which comes from the upper left.
void DrawCast(cairo_t* pen) {
    constexpr double kShadowShift = 5.5;
    constexpr double kShadowBlur = 9;
    constexpr double kGlowShift = 3.5;
    constexpr double kGlowBlur = 6;
    cairo_save(pen);
    ClipToRing(pen, kCovered, kReach);
    const auto disc = [](double shift) {
        return [shift](cairo_t* mask) { Circle(mask, kMiddle + shift, kMiddle + shift, kCovered - 1); };
    };
    FillSoft(pen, disc(kShadowShift), kShadowBlur, WithAlpha(kBlack, 0.40));
    FillSoft(pen, disc(-kGlowShift), kGlowBlur, WithAlpha(kWhite, 0.15));
    cairo_restore(pen);
}

/// The lip's round: light on its upper left, shade on its lower right, and the glaze's reflection.
void DrawLip(cairo_t* pen) {
    constexpr double kBeyond = 20;
    constexpr double kRound = 6;
    constexpr double kShift = 12;
    constexpr double kBlur = 12;
    cairo_save(pen);
    Circle(pen, kMiddle, kMiddle, kCovered + 1);
    cairo_clip(pen);
    FillSoft(pen, Crescent(kCovered + kBeyond, kCovered - kRound, kShift), kBlur, WithAlpha(kWhite, 0.38));
    FillSoft(pen, Crescent(kCovered + kBeyond, kCovered - kRound, -kShift), kBlur, WithAlpha(kBlack, 0.38));
    constexpr double kReflectionBegin = 1.10 * kPi;
    constexpr double kReflectionEnd = 1.40 * kPi;
    constexpr double kReflectionWidth = 8;
    constexpr double kReflectionBlur = 6;
    const Shape reflection = [](cairo_t* mask) {
        cairo_arc(mask, kMiddle, kMiddle, (kOpen + kCovered) / 2 + 4, kReflectionBegin, kReflectionEnd);
        cairo_set_line_width(mask, kReflectionWidth);
        cairo_set_line_cap(mask, CAIRO_LINE_CAP_ROUND);
        cairo_stroke(mask);
    };
    FillSoft(pen, reflection, kReflectionBlur, WithAlpha(kWhite, 0.55));
    cairo_restore(pen);
}

/// The hollow within the lip. Its edges are soft: on the open hole the colours' own edge makes them an opening's rim,
/// on the covered one they are no more than a dimple.
void DrawHollow(cairo_t* pen) {
    constexpr double kEdge = 6;
    constexpr double kShadeShift = 20;
    constexpr double kShadeBlur = 15;
    cairo_save(pen);
    Circle(pen, kMiddle, kMiddle, kOpen + kEdge);
    cairo_clip(pen);
    FillSoft(pen, Crescent(kOpen + 1, kOpen + 1, kShadeShift), kShadeBlur, WithAlpha(kBlack, 0.30));
    cairo_restore(pen);

    constexpr double kSlope = kOpen * std::numbers::sqrt2 / 2;
    Circle(pen, kMiddle, kMiddle, kOpen);
    FillLinear(pen, kMiddle - kSlope, kMiddle - kSlope, kMiddle + kSlope, kMiddle + kSlope,
               {{0, WithAlpha(kBlack, 0.20)}, {0.7, WithAlpha(kBlack, 0)}, {1, WithAlpha(kBlack, 0)}});

    constexpr double kRim = 8;
    constexpr double kRimShift = 4;
    constexpr double kRimBlur = 5;
    cairo_save(pen);
    ClipToRing(pen, kOpen - kRim, kOpen + kRim);
    FillSoft(pen, Crescent(kOpen + 2, kOpen + 1, -kRimShift), kRimBlur, WithAlpha(kWhite, 0.24));
    cairo_restore(pen);
}

}  // namespace

void DrawFingerWell(const std::string& folder) {
    Picture picture(kSize, kSize);
    DrawCast(picture.Pen());
    DrawLip(picture.Pen());
    DrawHollow(picture.Pen());
    picture.SavePng(folder + "/hole_well.png");
}

}  // namespace pictures
