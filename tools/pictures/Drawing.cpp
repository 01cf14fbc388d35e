#include "Drawing.h"

#include "PngFile.h"

#include <pango/pangocairo.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <stdexcept>

namespace pictures {

namespace {

constexpr double kPi = std::numbers::pi;
// Three box blurs in a row come within 3 % of a Gaussian.
constexpr int kBoxPasses = 3;

void Check(cairo_status_t status, const std::string& what) {
    if (status != CAIRO_STATUS_SUCCESS) {
        throw std::runtime_error(what + ": " + cairo_status_to_string(status));
    }
}

/// One box blur along a row or a column of an 8-bit mask; @p step is the distance of neighbours in bytes.
void BlurLine(unsigned char* line, int length, int step, int radius, std::vector<unsigned char>& copy) {
    copy.resize(static_cast<std::size_t>(length));
    for (int i = 0; i < length; ++i) {
        copy[static_cast<std::size_t>(i)] = line[static_cast<std::ptrdiff_t>(i) * step];
    }
    const int window = 2 * radius + 1;
    int sum = 0;
    for (int i = -radius; i < length + radius; ++i) {
        const int entering = i + radius;
        const int leaving = i - radius - 1;
        sum += entering < length && entering >= 0 ? copy[static_cast<std::size_t>(entering)] : 0;
        sum -= leaving >= 0 && leaving < length ? copy[static_cast<std::size_t>(leaving)] : 0;
        if (i >= 0 && i < length) {
            line[static_cast<std::ptrdiff_t>(i) * step] = static_cast<unsigned char>((sum + radius) / window);
        }
    }
}

void Blur(cairo_surface_t* mask, int radius) {
    cairo_surface_flush(mask);
    unsigned char* data = cairo_image_surface_get_data(mask);
    const int width = cairo_image_surface_get_width(mask);
    const int height = cairo_image_surface_get_height(mask);
    const int stride = cairo_image_surface_get_stride(mask);
    std::vector<unsigned char> copy;
    for (int pass = 0; pass < kBoxPasses; ++pass) {
        for (int y = 0; y < height; ++y) {
            BlurLine(data + static_cast<std::ptrdiff_t>(y) * stride, width, 1, radius, copy);
        }
        for (int x = 0; x < width; ++x) {
            BlurLine(data + x, height, stride, radius, copy);
        }
    }
    cairo_surface_mark_dirty(mask);
}

}  // namespace

Picture::Picture(double width, double height, double scale, Ground ground) {
    const auto format = ground == Ground::kOpaque ? CAIRO_FORMAT_RGB24 : CAIRO_FORMAT_ARGB32;
    surface_ = cairo_image_surface_create(format, static_cast<int>(std::lround(width * scale)),
                                          static_cast<int>(std::lround(height * scale)));
    Check(cairo_surface_status(surface_), "a picture's surface");
    pen_ = cairo_create(surface_);
    cairo_scale(pen_, scale, scale);
    cairo_set_line_cap(pen_, CAIRO_LINE_CAP_ROUND);
    cairo_set_line_join(pen_, CAIRO_LINE_JOIN_ROUND);
}

Picture::~Picture() {
    cairo_destroy(pen_);
    cairo_surface_destroy(surface_);
}

void Picture::SavePng(const std::string& path) const {
    Check(cairo_status(pen_), path);
    WritePng(surface_, path);
}

void SetColour(cairo_t* pen, const Colour& colour) {
    cairo_set_source_rgba(pen, colour.red, colour.green, colour.blue, colour.alpha);
}

void RoundedRectangle(cairo_t* pen, double x, double y, double width, double height, double radius) {
    const double r = std::min(radius, std::min(width, height) / 2);
    cairo_new_sub_path(pen);
    cairo_arc(pen, x + width - r, y + r, r, -kPi / 2, 0);
    cairo_arc(pen, x + width - r, y + height - r, r, 0, kPi / 2);
    cairo_arc(pen, x + r, y + height - r, r, kPi / 2, kPi);
    cairo_arc(pen, x + r, y + r, r, kPi, 1.5 * kPi);
    cairo_close_path(pen);
}

void Circle(cairo_t* pen, double x, double y, double radius) {
    cairo_new_sub_path(pen);
    cairo_arc(pen, x, y, radius, 0, 2 * kPi);
    cairo_close_path(pen);
}

void Line(cairo_t* pen, double x1, double y1, double x2, double y2) {
    cairo_move_to(pen, x1, y1);
    cairo_line_to(pen, x2, y2);
}

void StrokeRound(cairo_t* pen, double width, const Colour& colour) {
    cairo_set_line_cap(pen, CAIRO_LINE_CAP_ROUND);
    cairo_set_line_join(pen, CAIRO_LINE_JOIN_ROUND);
    cairo_set_line_width(pen, width);
    SetColour(pen, colour);
    cairo_stroke(pen);
}

void FillWith(cairo_t* pen, const Colour& colour) {
    SetColour(pen, colour);
    cairo_fill(pen);
}

namespace {

void FillPattern(cairo_t* pen, cairo_pattern_t* pattern, const std::vector<Stop>& stops) {
    for (const Stop& stop : stops) {
        cairo_pattern_add_color_stop_rgba(pattern, stop.offset, stop.colour.red, stop.colour.green, stop.colour.blue,
                                          stop.colour.alpha);
    }
    cairo_set_source(pen, pattern);
    cairo_fill(pen);
    cairo_pattern_destroy(pattern);
}

}  // namespace

void FillLinear(cairo_t* pen, double x1, double y1, double x2, double y2, const std::vector<Stop>& stops) {
    FillPattern(pen, cairo_pattern_create_linear(x1, y1, x2, y2), stops);
}

void FillRadial(cairo_t* pen, double x, double y, double radius, const std::vector<Stop>& stops) {
    FillPattern(pen, cairo_pattern_create_radial(x, y, 0, x, y, radius), stops);
}

void FillSoft(cairo_t* pen, const Shape& shape, double blur, const Colour& colour) {
    cairo_surface_t* target = cairo_get_target(pen);
    cairo_surface_t* mask = cairo_image_surface_create(CAIRO_FORMAT_A8, cairo_image_surface_get_width(target),
                                                       cairo_image_surface_get_height(target));
    Check(cairo_surface_status(mask), "a shadow's surface");
    cairo_matrix_t matrix;
    cairo_get_matrix(pen, &matrix);
    cairo_t* maskPen = cairo_create(mask);
    cairo_set_matrix(maskPen, &matrix);
    shape(maskPen);
    cairo_fill(maskPen);
    cairo_destroy(maskPen);
    const double pixelsPerUnit = std::hypot(matrix.xx, matrix.yx);
    Blur(mask, std::max(1, static_cast<int>(std::lround(blur * pixelsPerUnit / kBoxPasses))));
    cairo_save(pen);
    cairo_identity_matrix(pen);
    SetColour(pen, colour);
    cairo_mask_surface(pen, mask, 0, 0);
    cairo_restore(pen);
    cairo_surface_destroy(mask);
}

double TextCentred(cairo_t* pen, const std::string& text, double x, double y, double size, const Colour& colour) {
    // Noto Sans' capital letters are 714 of 1000 units tall (its OS/2 table's sCapHeight).
    constexpr double kCapHeight = 0.714;
    PangoLayout* layout = pango_cairo_create_layout(pen);
    PangoFontDescription* font = pango_font_description_from_string("Noto Sans Bold");
    pango_font_description_set_absolute_size(font, size * PANGO_SCALE);
    pango_layout_set_font_description(layout, font);
    pango_layout_set_text(layout, text.c_str(), -1);
    int width = 0;
    int height = 0;
    pango_layout_get_size(layout, &width, &height);
    const double baseline = static_cast<double>(pango_layout_get_baseline(layout)) / PANGO_SCALE;
    cairo_move_to(pen, x - static_cast<double>(width) / PANGO_SCALE / 2, y + size * kCapHeight / 2 - baseline);
    SetColour(pen, colour);
    pango_cairo_show_layout(pen, layout);
    pango_font_description_free(font);
    g_object_unref(layout);
    return static_cast<double>(width) / PANGO_SCALE;
}

}  // namespace pictures
