#include "Buttons.h"

#include "Plate.h"
#include "Vector3.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace pictures {

namespace {

constexpr double kPi = std::numbers::pi;

/// The three bars that turn into a cross. @param t 0 closed .. 1 open.
void DrawMenuSign(cairo_t* pen, double t, const Colour& colour) {
    constexpr double kBar = 20;
    constexpr double kArm = 23;
    constexpr double kSpacing = 15;
    const double eased = SmoothStep(0, 1, t);
    const double angle = eased * kPi / 4;
    const double halfLength = std::lerp(kBar, kArm, eased);
    for (const double side : {-1.0, 1.0}) {
        cairo_save(pen);
        cairo_translate(pen, kCentre, kCentre + side * kSpacing * (1 - eased));
        cairo_rotate(pen, -side * angle);
        Line(pen, -halfLength, 0, halfLength, 0);
        cairo_restore(pen);
        StrokeRound(pen, kSignWidth, colour);
    }
    // The middle bar draws in and is gone before the others meet.
    const double rest = std::max(0.0, 1 - eased / 0.85);
    if (rest > 0) {
        Line(pen, kCentre - kBar * rest, kCentre, kCentre + kBar * rest, kCentre);
        StrokeRound(pen, kSignWidth, WithAlpha(colour, rest));
    }
}

void DrawQuestionSign(cairo_t* pen, const Colour& colour) {
    cairo_new_path(pen);
    cairo_move_to(pen, 35.5, 37.5);
    cairo_curve_to(pen, 35.5, 29.5, 41, 25, 48, 25);
    cairo_curve_to(pen, 55.5, 25, 60.5, 30, 60.5, 36.5);
    cairo_curve_to(pen, 60.5, 46, 48, 46.5, 48, 57);
    StrokeRound(pen, kSignWidth + 0.5, colour);
    Circle(pen, 48, 69.5, 4.6);
    FillWith(pen, colour);
}

void DrawGearSign(cairo_t* pen, const Colour& colour) {
    constexpr int kTeeth = 8;
    constexpr double kRoot = 19;
    constexpr double kTip = 26;
    constexpr double kHub = 8.5;
    constexpr double kJoin = 3;
    // Half the angle of a tooth at its root and at its tip, as a share of a tooth's whole turn.
    constexpr double kRootShare = 0.29;
    constexpr double kTipShare = 0.19;
    cairo_new_path(pen);
    for (int tooth = 0; tooth < kTeeth; ++tooth) {
        const double turn = 2 * kPi / kTeeth;
        const double middle = tooth * turn - kPi / 2;
        const std::array<std::array<double, 2>, 4> corners = {
            {{-kRootShare, kRoot}, {-kTipShare, kTip}, {kTipShare, kTip}, {kRootShare, kRoot}}};
        for (const auto& [share, radius] : corners) {
            const double angle = middle + share * turn;
            cairo_line_to(pen, kCentre + radius * std::cos(angle), kCentre + radius * std::sin(angle));
        }
    }
    cairo_close_path(pen);
    cairo_new_sub_path(pen);
    cairo_arc_negative(pen, kCentre, kCentre, kHub, 2 * kPi, 0);
    cairo_close_path(pen);
    SetColour(pen, colour);
    cairo_set_line_join(pen, CAIRO_LINE_JOIN_ROUND);
    cairo_set_line_width(pen, kJoin);
    cairo_fill_preserve(pen);
    cairo_stroke(pen);
}

std::string Name(const std::string& folder, const std::string& name, Look look) {
    return folder + "/" + name + (look == Look::kPressed ? "p.png" : ".png");
}

}  // namespace

void DrawMenuFrames(const std::string& folder) {
    constexpr int kFrames = 4;
    for (int frame = 1; frame <= kFrames; ++frame) {
        for (const Look look : {Look::kNormal, Look::kPressed}) {
            Picture picture(kButton, kButton);
            const Colour sign = DrawRoundPlate(picture.Pen(), look);
            DrawMenuSign(picture.Pen(), (frame - 1.0) / (kFrames - 1), sign);
            picture.SavePng(Name(folder, "icon_memu_" + std::to_string(frame), look));
        }
    }
}

void DrawMenuButtons(const std::string& folder) {
    for (const Look look : {Look::kNormal, Look::kPressed}) {
        Picture help(kButton, kButton);
        DrawQuestionSign(help.Pen(), DrawRoundPlate(help.Pen(), look));
        help.SavePng(Name(folder, "icon_help_1", look));
        Picture setup(kButton, kButton);
        DrawGearSign(setup.Pen(), DrawRoundPlate(setup.Pen(), look));
        setup.SavePng(Name(folder, "icon_setup_1", look));
    }
}

void DrawEditSign(const std::string& folder) {
    // The whole of a colour's button, empty but for the sign in its corner, so that the two are one.
    constexpr double kWidth = 184;
    constexpr double kHeight = 152;
    constexpr double kBadge = 26;
    constexpr double kInset = 14;
    constexpr double kEdge = 3;
    Picture picture(kWidth, kHeight);
    cairo_t* pen = picture.Pen();
    cairo_translate(pen, kWidth - kInset - kBadge, kHeight - kInset - kBadge);
    Circle(pen, 0, 0, kBadge);
    FillWith(pen, kInk);
    Circle(pen, 0, 0, kBadge - kEdge / 2);
    StrokeRound(pen, kEdge, kWhite);
    // A pencil, tip to the lower left.
    cairo_rotate(pen, kPi / 4);
    cairo_move_to(pen, 0, 17);
    cairo_line_to(pen, -5, 8);
    cairo_line_to(pen, -5, -8);
    cairo_line_to(pen, 5, -8);
    cairo_line_to(pen, 5, 8);
    cairo_close_path(pen);
    FillWith(pen, kWhite);
    RoundedRectangle(pen, -5, -15, 10, 5, 2);
    FillWith(pen, kHoney);
    picture.SavePng(folder + "/swatch_edit.png");
}

}  // namespace pictures
