#include "Wordmark.h"

#include <numbers>

namespace pictures {

namespace {

constexpr double kPi = std::numbers::pi;
// All measures are shares of the height of a small letter; y runs upwards from the baseline.
constexpr double kStroke = 0.205;
constexpr double kCapital = 1.48;
constexpr double kRound = 0.5;

/// One letter: what to stroke, and how far the middle of its outermost strokes are apart.
struct Letter {
    Shape path;
    double width;
    /// The gap to the next letter, from stroke middle to stroke middle.
    double gap;
};

const Letter kLetters[] = {
    {[](cairo_t* pen) {
         constexpr double kWaist = 0.79;
         constexpr double kUpper = (kCapital - kWaist) / 2;
         constexpr double kLower = kWaist / 2;
         cairo_move_to(pen, 0, kWaist);
         cairo_line_to(pen, 0.42, kWaist);
         cairo_arc(pen, 0.42, kWaist + kUpper, kUpper, -kPi / 2, kPi / 2);
         cairo_line_to(pen, 0, kCapital);
         cairo_line_to(pen, 0, 0);
         cairo_line_to(pen, 0.50, 0);
         cairo_arc(pen, 0.50, kLower, kLower, -kPi / 2, kPi / 2);
     },
     0.89, 0.40},
    {[](cairo_t* pen) {
         Line(pen, 0, 0, 0, 1);
         cairo_new_sub_path(pen);
         cairo_arc_negative(pen, kRound, 1 - kRound, kRound, kPi, kPi * 0.42);
     },
     0.60, 0.22},
    {[](cairo_t* pen) {
         cairo_move_to(pen, 0.02, 0.5);
         cairo_line_to(pen, 1, 0.5);
         cairo_arc(pen, 0.5, 0.5, 0.5, 0, kPi * 1.76);
     },
     1.0, 0.30},
    {[](cairo_t* pen) {
         cairo_move_to(pen, 0, 1);
         cairo_line_to(pen, 0.46, 0);
         cairo_line_to(pen, 0.92, 1);
     },
     0.92, 0.29},
    {[](cairo_t* pen) {
         Circle(pen, kRound, kRound, kRound);
         Line(pen, 1, 1, 1, 0);
     },
     1.0, 0.42},
    {[](cairo_t* pen) {
         constexpr double kArch = 0.45;
         Line(pen, 0, 0, 0, 1);
         cairo_move_to(pen, 2 * kArch, 0);
         cairo_line_to(pen, 2 * kArch, 1 - kArch);
         cairo_arc(pen, kArch, 1 - kArch, kArch, 0, kPi);
     },
     0.90, 0.34},
    {[](cairo_t* pen) {
         constexpr double kHook = 0.34;
         constexpr double kStem = 0.24;
         cairo_move_to(pen, kStem, kCapital - 0.10);
         cairo_line_to(pen, kStem, kHook);
         cairo_arc(pen, kStem + kHook, kHook, kHook, kPi, kPi * 1.55);
         Line(pen, 0, 1, 0.58, 1);
     },
     0.62, 0},
};

}  // namespace

void DrawWordmark(cairo_t* pen, double centre, double baseline, double xHeight, const Colour& colour,
                  const Colour& accent) {
    double width = 0;
    for (const Letter& letter : kLetters) {
        width += letter.width + letter.gap;
    }
    cairo_save(pen);
    cairo_translate(pen, centre - width / 2 * xHeight, baseline);
    cairo_scale(pen, xHeight, -xHeight);
    for (const Letter& letter : kLetters) {
        cairo_new_path(pen);
        letter.path(pen);
        StrokeRound(pen, kStroke, colour);
        // The bowl of the a holds a finger hole.
        if (&letter == &kLetters[4]) {
            Circle(pen, kRound, kRound, kRound / 2.3);
            FillWith(pen, accent);
        }
        cairo_translate(pen, letter.width + letter.gap, 0);
    }
    cairo_restore(pen);
}

}  // namespace pictures
