#include "HelpPages.h"

#include "Drawing.h"

#include "play/FingeringTable.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <numeric>

namespace pictures {

namespace {

constexpr int kFingerings = static_cast<int>(std::size(kFingeringTable));
constexpr int kSemitones = 12;
constexpr Colour kSkin = Rgb(0xFFD3B0);
constexpr Colour kHairline = Rgb(0xEBD3B6);
constexpr Colour kOpenRing = Rgb(0xA08674);

int Pitch(int mask) {
    return kFingeringTable[mask].octave * kSemitones + kFingeringTable[mask].semitone;
}

/// The fingerings' masks, the lowest note first.
std::array<int, kFingerings> ByPitch() {
    std::array<int, kFingerings> masks{};
    std::iota(masks.begin(), masks.end(), 0);
    std::sort(masks.begin(), masks.end(), [](int a, int b) { return Pitch(a) < Pitch(b); });
    return masks;
}

void DrawFingering(cairo_t* pen, double x, double y, double spacing, int mask) {
    constexpr double kCovered = 11.5;
    constexpr double kOpen = 9;
    constexpr double kRing = 3;
    for (int hole = 0; hole < 4; ++hole) {
        const int column = hole % 2;
        const int row = hole / 2;
        const double holeX = x + column * spacing;
        const double holeY = y + row * spacing;
        if ((mask >> hole & 1) != 0) {
            Circle(pen, holeX, holeY, kCovered);
            FillWith(pen, kClayDeep);
        } else {
            Circle(pen, holeX, holeY, kOpen);
            StrokeRound(pen, kRing, kOpenRing);
        }
    }
}

/// The fingerings from the lowest note to the highest. Their names are texts of the help page's layout, because every
/// language has its own.
void DrawNotes(const std::string& folder) {
    constexpr double kWidth = 640;
    constexpr double kHeight = 288;
    constexpr int kColumns = 4;
    constexpr int kRows = kFingerings / kColumns;
    constexpr double kGap = 8;
    constexpr double kCellWidth = (kWidth - (kColumns - 1) * kGap) / kColumns;
    constexpr double kCellHeight = (kHeight - (kRows - 1) * kGap) / kRows;
    constexpr double kDotsAt = 26;
    constexpr double kSpacing = 27;
    constexpr double kCorner = 16;
    Picture picture(kWidth, kHeight);
    cairo_t* pen = picture.Pen();
    int index = 0;
    for (const int mask : ByPitch()) {
        const int column = index % kColumns;
        const int row = index / kColumns;
        const double x = column * (kCellWidth + kGap);
        const double y = row * (kCellHeight + kGap);
        RoundedRectangle(pen, x + 1, y + 1, kCellWidth - 2, kCellHeight - 2, kCorner);
        SetColour(pen, kWhite);
        cairo_fill_preserve(pen);
        StrokeRound(pen, 2, kHairline);
        DrawFingering(pen, x + kDotsAt, y + (kCellHeight - kSpacing) / 2, kSpacing, mask);
        ++index;
    }
    picture.SavePng(folder + "/help_notes.png");
}

/// One finger that comes in from the side and rests its tip on a hole. @param side -1 from the left, 1 from the right.
void DrawFinger(cairo_t* pen, double tipX, double tipY, double side, double drop) {
    constexpr double kFinger = 34;
    constexpr double kOutline = 3.5;
    constexpr double kLength = 110;
    for (const bool isOutline : {true, false}) {
        cairo_move_to(pen, tipX, tipY);
        cairo_curve_to(pen, tipX + side * kLength * 0.4, tipY, tipX + side * kLength * 0.7, tipY + drop * 0.5,
                       tipX + side * kLength, tipY + drop);
        StrokeRound(pen, isOutline ? kFinger : kFinger - 2 * kOutline, isOutline ? kInk : kSkin);
    }
    // The nail.
    cairo_new_path(pen);
    cairo_save(pen);
    cairo_translate(pen, tipX - side * 3, tipY);
    cairo_scale(pen, 8, 6.5);
    Circle(pen, 0, 0, 1);
    cairo_restore(pen);
    FillWith(pen, Rgb(0xFFEDE0));
}

void DrawHold(const std::string& folder) {
    constexpr double kWidth = 208;
    constexpr double kHeight = 248;
    constexpr double kPhoneX = 52;
    constexpr double kPhoneY = 14;
    constexpr double kPhoneWidth = 104;
    constexpr double kPhoneHeight = 158;
    // Drawn larger than it is shown.
    constexpr double kShown = 200 / kHeight;
    Picture picture(kWidth * kShown, kHeight * kShown);
    cairo_t* pen = picture.Pen();
    cairo_scale(pen, kShown, kShown);
    RoundedRectangle(pen, 1, 1, kWidth - 2, kHeight - 2, 24);
    SetColour(pen, Rgb(0xFBDDBB));
    cairo_fill_preserve(pen);
    cairo_clip(pen);

    RoundedRectangle(pen, kPhoneX, kPhoneY, kPhoneWidth, kPhoneHeight, 15);
    FillWith(pen, kInk);
    RoundedRectangle(pen, kPhoneX + 7, kPhoneY + 7, kPhoneWidth - 14, kPhoneHeight - 20, 9);
    FillWith(pen, kClay);
    // The microphone in the lower edge.
    Line(pen, kWidth / 2 - 9, kPhoneY + kPhoneHeight - 6.5, kWidth / 2 + 9, kPhoneY + kPhoneHeight - 6.5);
    StrokeRound(pen, 4, kHoney);
    constexpr double kHoleX = 22;
    constexpr double kHoleTop = 66;
    constexpr double kHoleBottom = 118;
    for (const double side : {-1.0, 1.0}) {
        for (const double y : {kHoleTop, kHoleBottom}) {
            Circle(pen, kWidth / 2 + side * kHoleX, y, 17.5);
            FillWith(pen, kHoney);
        }
    }
    for (const double side : {-1.0, 1.0}) {
        DrawFinger(pen, kWidth / 2 + side * (kHoleX + 3), kHoleBottom, side, 22);
        DrawFinger(pen, kWidth / 2 + side * (kHoleX + 3), kHoleTop, side, 14);
    }
    // Lips below, their breath going up to the microphone.
    const double middle = kWidth / 2;
    for (const double offset : {-1.0, 0.0, 1.0}) {
        Line(pen, middle + offset * 8, 205 - (offset == 0 ? 3 : 0), middle + offset * 13, 183 - (offset == 0 ? 3 : 0));
        StrokeRound(pen, 4.5, kClayDeep);
    }
    cairo_move_to(pen, middle - 34, 225);
    cairo_curve_to(pen, middle - 22, 216, middle - 12, 211, middle, 215);
    cairo_curve_to(pen, middle + 12, 211, middle + 22, 216, middle + 34, 225);
    cairo_curve_to(pen, middle + 20, 243, middle - 20, 243, middle - 34, 225);
    cairo_close_path(pen);
    SetColour(pen, kClay);
    cairo_fill_preserve(pen);
    StrokeRound(pen, 3.5, kInk);
    cairo_save(pen);
    cairo_translate(pen, middle, 225);
    cairo_scale(pen, 9, 5);
    Circle(pen, 0, 0, 1);
    cairo_restore(pen);
    FillWith(pen, kInk);
    picture.SavePng(folder + "/help_hold.png");
}

}  // namespace

void DrawHelpPages(const std::string& folder) {
    DrawNotes(folder);
    DrawHold(folder);
}

}  // namespace pictures
