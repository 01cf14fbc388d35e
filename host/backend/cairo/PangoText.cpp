#include "backend/cairo/PangoText.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "text/LineBreaking.h"

namespace host {

namespace {

// Pango counts in 1/1024 device pixels in an int.
constexpr double kLargestExtent = 1 << 20;

int ToPango(double length, double scale) {
    return static_cast<int>(std::lround(std::clamp(length * scale, 0.0, kLargestExtent) * PANGO_SCALE));
}

double FromPango(int length) {
    return static_cast<double>(length) / PANGO_SCALE;
}

struct GlibReleaser {
    void operator()(char* text) const noexcept { g_free(text); }
};

/// Pango complains on stderr about bytes that are no UTF-8; a text of a translation must not do that.
std::string ValidText(std::string_view utf8, TextWrap wrap) {
    const std::unique_ptr<char, GlibReleaser> valid(g_utf8_make_valid(utf8.data(), static_cast<gssize>(utf8.size())));
    std::string text = valid.get();
    if (wrap == TextWrap::kOneLine) {
        for (char& byte : text) {
            if (byte == '\n' || byte == '\r') byte = ' ';
        }
    }
    return text;
}

struct AttributesReleaser {
    void operator()(PangoAttrList* list) const noexcept { pango_attr_list_unref(list); }
};

/// Keeps the lines from being broken within the ranges of the text; null without any.
std::unique_ptr<PangoAttrList, AttributesReleaser> AttributesFor(const std::vector<TextRange>& unbreakable) {
    if (unbreakable.empty()) return nullptr;
    std::unique_ptr<PangoAttrList, AttributesReleaser> list(pango_attr_list_new());
    for (const TextRange& range : unbreakable) {
        PangoAttribute* const attribute = pango_attr_allow_breaks_new(FALSE);
        attribute->start_index = static_cast<guint>(range.begin);
        attribute->end_index = static_cast<guint>(range.end);
        pango_attr_list_insert(list.get(), attribute);
    }
    return list;
}

PangoAlignment ToPango(HorizontalAlign align) {
    switch (align) {
        case HorizontalAlign::kCenter:
            return PANGO_ALIGN_CENTER;
        case HorizontalAlign::kRight:
            return PANGO_ALIGN_RIGHT;
        case HorizontalAlign::kLeft:
            break;
    }
    return PANGO_ALIGN_LEFT;
}

}  // namespace

PangoText::PangoText(const PangoFonts& fonts, std::string_view utf8, const TextStyle& style, double scale)
    : layout_(pango_layout_new(fonts.Context())), maxWidth_(style.maxWidth), scale_(scale > 0 ? scale : 1) {
    const PangoFontDescriptionHandle font(pango_font_description_new());
    pango_font_description_set_family_static(font.get(), kFontFamily);
    pango_font_description_set_weight(font.get(),
                                      style.weight == FontWeight::kBold ? PANGO_WEIGHT_BOLD : PANGO_WEIGHT_NORMAL);
    pango_font_description_set_absolute_size(font.get(), std::max(1, ToPango(style.size, scale_)));

    PangoLayout* const layout = layout_.get();
    pango_layout_set_font_description(layout, font.get());
    const std::string text = ValidText(utf8, style.wrap);
    pango_layout_set_text(layout, text.data(), static_cast<int>(text.size()));
    // The text's own script must not turn left into right: alignment is a matter of the form's layout.
    pango_layout_set_auto_dir(layout, FALSE);
    pango_layout_set_alignment(layout, ToPango(style.align));
    pango_layout_set_wrap(layout, PANGO_WRAP_WORD_CHAR);

    const bool wraps = style.wrap == TextWrap::kWords;
    if (style.maxWidth > 0) {
        pango_layout_set_width(layout, ToPango(style.maxWidth, scale_));
    } else if (style.align != HorizontalAlign::kLeft || style.maxHeight > 0) {
        // Lines align within a width, and only a text with a width ends in an ellipsis; its own takes nothing away.
        int width = 0;
        pango_layout_get_size(layout, &width, nullptr);
        pango_layout_set_width(layout, width);
    }
    if (!wraps) {
        if (style.maxWidth > 0) pango_layout_set_ellipsize(layout, PANGO_ELLIPSIZE_END);
    } else if (style.maxHeight > 0) {
        pango_layout_set_height(layout, ToPango(style.maxHeight, scale_));
        pango_layout_set_ellipsize(layout, PANGO_ELLIPSIZE_END);
    }
    if (wraps) {
        pango_layout_set_attributes(layout, AttributesFor(UnbreakableRanges(text)).get());
        pango_layout_get_extents(layout, nullptr, &extent_);
        // What no line can hold is broken after all.
        const int width = pango_layout_get_width(layout);
        if (width >= 0 && extent_.width > width) pango_layout_set_attributes(layout, nullptr);
    }
    pango_layout_get_extents(layout, nullptr, &extent_);
}

SizeF PangoText::Measure() const {
    const double width = FromPango(extent_.width) / scale_;
    return {maxWidth_ > 0 ? std::min(width, maxWidth_) : width, FromPango(extent_.height) / scale_};
}

bool PangoText::IsEllipsized() const {
    return pango_layout_is_ellipsized(layout_.get()) != FALSE;
}

void PangoText::Show(cairo_t* context, double left, double top) const {
    cairo_move_to(context, left - FromPango(extent_.x), top - FromPango(extent_.y));
    pango_cairo_show_layout(context, layout_.get());
    cairo_new_path(context);
}

void PangoText::ShowEdge(cairo_t* context, double left, double top, double edgeWidth) const {
    if (!edge_.mask || edge_.width != edgeWidth) MakeEdge(edgeWidth);
    cairo_mask_surface(context, edge_.mask.get(), left + edge_.left, top + edge_.top);
}

void PangoText::MakeEdge(double width) const {
    PangoRectangle ink;
    pango_layout_get_extents(layout_.get(), &ink, nullptr);
    edge_.width = width;
    edge_.left = static_cast<int>(std::floor(FromPango(ink.x - extent_.x) - width));
    edge_.top = static_cast<int>(std::floor(FromPango(ink.y - extent_.y) - width));
    // A pixel more on each side, as the outline is not that of the glyphs on whole pixels.
    const auto side = [&](int extent) { return static_cast<int>(std::ceil(FromPango(extent) + width * 2)) + 2; };
    edge_.mask.reset(cairo_image_surface_create(CAIRO_FORMAT_A8, side(ink.width), side(ink.height)));

    const CairoContextHandle context(cairo_create(edge_.mask.get()));
    cairo_move_to(context.get(), -FromPango(extent_.x) - edge_.left, -FromPango(extent_.y) - edge_.top);
    pango_cairo_layout_path(context.get(), layout_.get());
    cairo_set_line_join(context.get(), CAIRO_LINE_JOIN_ROUND);
    // The inner half of the stroke lies beneath the glyphs.
    cairo_set_line_width(context.get(), width * 2);
    cairo_stroke_preserve(context.get());
    cairo_fill(context.get());
}

}  // namespace host
