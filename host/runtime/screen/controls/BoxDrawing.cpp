#include "runtime/screen/controls/BoxDrawing.h"

#include <algorithm>
#include <cmath>

namespace host {

namespace {

// No radius is longer than half of the shorter side.
SizeF Arc(const RectF& rect, double radius) {
    const double arc = 2 * std::max(0.0, std::min(radius, std::min(rect.width, rect.height) / 2));
    return {arc, arc};
}

}  // namespace

void AddFilling(DrawList& list, const RectF& rect, double radius, Rgba color) {
    if (color.alpha == 0 || rect.width <= 0 || rect.height <= 0) return;
    if (radius > 0) {
        list.Add(FilledRoundRectangle{rect, Arc(rect, radius), color});
    } else {
        list.Add(FilledRectangle{rect, color});
    }
}

void AddOutline(DrawList& list, const RectF& rect, double radius, double width, Rgba color) {
    if (color.alpha == 0 || width <= 0 || rect.width <= width || rect.height <= width) return;
    const RectF middle = rect.Grown(-width / 2);
    if (radius > 0) {
        list.Add(StrokedRoundRectangle{middle, Arc(middle, radius - width / 2), width, color});
    } else {
        list.Add(StrokedRectangle{middle, width, color});
    }
}

void AddBox(DrawList& list, const BoxLook& look) {
    const RectF whole = WholeOf(list);
    if (look.gradientBottom) {
        list.Add(FilledGradient{whole, Arc(whole, look.corner), look.background, *look.gradientBottom});
    } else {
        AddFilling(list, whole, look.corner, look.background);
    }
    AddOutline(list, whole, look.corner, look.borderWidth, look.border);
}

void AddPicture(DrawList& list, const RectF& rect, const std::shared_ptr<const Picture>& picture) {
    if (picture && rect.width > 0 && rect.height > 0) list.Add(DrawnPicture{rect, picture});
}

RectF WholeOf(const DrawList& list) {
    return {0, 0, list.Size().width, list.Size().height};
}

RectF TextAreaOf(const DrawList& list, const BoxLook& look) {
    const double inset = look.borderWidth + look.corner / 2;
    return {inset, look.borderWidth, list.Size().width - 2 * inset, list.Size().height - 2 * look.borderWidth};
}

Rgba Shaded(Rgba color, double part) {
    const auto shade = [part](std::uint8_t channel) { return static_cast<std::uint8_t>(std::lround(channel * part)); };
    return {shade(color.red), shade(color.green), shade(color.blue), color.alpha};
}

}  // namespace host
