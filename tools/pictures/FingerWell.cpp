#include "FingerWell.h"

#include "Drawing.h"

#include <numbers>

namespace pictures {

void DrawFingerWell(const std::string& folder) {
    // The covered hole grows to a radius of 162.5: the well's wall begins just outside, and within there is only even
    // shading that suits the open and the covered hole alike.
    constexpr double kSize = 352;
    constexpr double kMiddle = kSize / 2;
    constexpr double kWall = 170;
    constexpr double kShade = 5.5;
    constexpr double kBlur = 9;
    Picture picture(kSize, kSize);
    cairo_t* pen = picture.Pen();
    cairo_save(pen);
    Circle(pen, kMiddle, kMiddle, kWall);
    cairo_clip(pen);
    cairo_rectangle(pen, 0, 0, kSize, kSize);
    const double reach = kWall * 0.72;
    FillLinear(pen, kMiddle - reach, kMiddle - reach, kMiddle + reach, kMiddle + reach,
               {{0, WithAlpha(kBlack, 0.16)},
                {0.2, WithAlpha(kBlack, 0.085)},
                {0.36, WithAlpha(kBlack, 0.028)},
                {0.5, WithAlpha(kBlack, 0)}});
    cairo_rectangle(pen, 0, 0, kSize, kSize);
    FillLinear(pen, kMiddle + reach, kMiddle + reach, kMiddle - reach, kMiddle - reach,
               {{0, WithAlpha(kWhite, 0.20)},
                {0.2, WithAlpha(kWhite, 0.105)},
                {0.36, WithAlpha(kWhite, 0.035)},
                {0.5, WithAlpha(kWhite, 0)}});
    for (const double side : {1.0, -1.0}) {
        const Shape crescent = [&](cairo_t* mask) {
            cairo_set_fill_rule(mask, CAIRO_FILL_RULE_EVEN_ODD);
            cairo_rectangle(mask, 0, 0, kSize, kSize);
            Circle(mask, kMiddle + side * kShade, kMiddle + side * kShade, kWall);
        };
        FillSoft(pen, crescent, kBlur, side > 0 ? WithAlpha(kBlack, 0.50) : WithAlpha(kWhite, 0.55));
    }
    cairo_restore(pen);
    // The rounded lip: it catches light where the wall is dark and casts shade where the wall is bright.
    constexpr double kLip = 1.5;
    Circle(pen, kMiddle, kMiddle, kWall + kLip + kLip);
    cairo_new_sub_path(pen);
    cairo_arc_negative(pen, kMiddle, kMiddle, kWall, 2 * std::numbers::pi, 0);
    cairo_close_path(pen);
    FillLinear(pen, kMiddle - reach, kMiddle - reach, kMiddle + reach, kMiddle + reach,
               {{0, WithAlpha(kWhite, 0.34)},
                {0.45, WithAlpha(kWhite, 0)},
                {0.55, WithAlpha(kBlack, 0)},
                {1, WithAlpha(kBlack, 0.16)}});
    picture.SavePng(folder + "/hole_well.png");
}

}  // namespace pictures
