// The full frame drawn with Cairo and Pango directly, once with each way of putting the pictures in: with the filter
// that Cairo takes by itself, with the bilinear one, and with copies that were scaled once before.

#include <pango/pangocairo.h>

#include <vector>

#include "Measure.h"
#include "Scene.h"

namespace {

constexpr double kQuarterTurn = 1.5707963267948966;
constexpr double kFullTurn = 4 * kQuarterTurn;

enum class Pictures { kDefaultFilter, kBilinear, kScaledOnce };

void SetColor(cairo_t* context, unsigned color) {
    cairo_set_source_rgb(context, SceneChannel(color, 16), SceneChannel(color, 8), SceneChannel(color, 0));
}

void DrawPicture(cairo_t* context, cairo_surface_t* picture, const SceneRect& place, Pictures pictures) {
    cairo_save(context);
    cairo_translate(context, place.x, place.y);
    cairo_scale(context, static_cast<double>(place.width) / cairo_image_surface_get_width(picture),
                static_cast<double>(place.height) / cairo_image_surface_get_height(picture));
    cairo_set_source_surface(context, picture, 0, 0);
    if (pictures == Pictures::kBilinear) cairo_pattern_set_filter(cairo_get_source(context), CAIRO_FILTER_BILINEAR);
    cairo_paint(context);
    cairo_restore(context);
}

void RoundRectangle(cairo_t* context, const SceneRect& rect) {
    const double radius = kSceneCorner;
    const double right = rect.x + rect.width - radius;
    const double bottom = rect.y + rect.height - radius;
    cairo_new_sub_path(context);
    cairo_arc(context, right, rect.y + radius, radius, -kQuarterTurn, 0);
    cairo_arc(context, right, bottom, radius, 0, kQuarterTurn);
    cairo_arc(context, rect.x + radius, bottom, radius, kQuarterTurn, 2 * kQuarterTurn);
    cairo_arc(context, rect.x + radius, rect.y + radius, radius, 2 * kQuarterTurn, 3 * kQuarterTurn);
    cairo_close_path(context);
}

void Frame(benchmark::State& state, Pictures pictures) {
    cairo_surface_t* const image = cairo_image_surface_create(CAIRO_FORMAT_RGB24, kSceneWidth, kSceneHeight);
    cairo_t* const context = cairo_create(image);
    std::vector<PangoLayout*> texts;
    PangoFontDescription* const font = pango_font_description_from_string(kSceneFont);
    pango_font_description_set_absolute_size(font, kSceneTextSize * PANGO_SCALE);
    for (const SceneText& text : kSceneTexts) {
        texts.push_back(pango_cairo_create_layout(context));
        pango_layout_set_font_description(texts.back(), font);
        pango_layout_set_text(texts.back(), text.text, -1);
    }
    std::vector<cairo_surface_t*> images;
    for (const ScenePicture& picture : kScenePictures) {
        const std::string path = std::string(BREVANT_PACKAGE "images/") + picture.file;
        images.push_back(cairo_image_surface_create_from_png(path.c_str()));
        if (cairo_surface_status(images.back()) != CAIRO_STATUS_SUCCESS) return state.SkipWithError(path.c_str());
        if (pictures != Pictures::kScaledOnce) continue;
        const SceneRect& place = picture.place;
        cairo_surface_t* const scaled = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, place.width, place.height);
        cairo_t* const onScaled = cairo_create(scaled);
        DrawPicture(onScaled, images.back(), {0, 0, place.width, place.height}, Pictures::kDefaultFilter);
        cairo_destroy(onScaled);
        cairo_surface_destroy(std::exchange(images.back(), scaled));
    }

    MeasureEach(state, [&] {
        SetColor(context, kSceneBackground);
        cairo_paint(context);
        SetColor(context, kSceneHole);
        for (const SceneRect& hole : kSceneHoles) {
            cairo_arc(context, hole.x + hole.width / 2.0, hole.y + hole.height / 2.0, hole.width / 2.0, 0, kFullTurn);
            cairo_fill(context);
        }
        for (const SceneRect& button : kSceneButtons) {
            cairo_pattern_t* const gradient = cairo_pattern_create_linear(0, button.y, 0, button.y + button.height);
            for (const auto& [at, color] : {std::pair{0.0, kSceneButtonTop}, std::pair{1.0, kSceneButtonBottom}}) {
                cairo_pattern_add_color_stop_rgb(gradient, at, SceneChannel(color, 16), SceneChannel(color, 8),
                                                 SceneChannel(color, 0));
            }
            cairo_set_source(context, gradient);
            RoundRectangle(context, button);
            cairo_fill(context);
            cairo_pattern_destroy(gradient);
        }
        SetColor(context, kSceneInk);
        for (std::size_t i = 0; i < texts.size(); ++i) {
            cairo_move_to(context, kSceneTexts[i].x, kSceneTexts[i].y);
            pango_cairo_show_layout(context, texts[i]);
        }
        for (std::size_t i = 0; i < images.size(); ++i) {
            DrawPicture(context, images[i], kScenePictures[i].place, pictures);
        }
        cairo_surface_flush(image);
    });
    if (cairo_status(context) != CAIRO_STATUS_SUCCESS) state.SkipWithError("Cairo failed");

    for (PangoLayout* text : texts) g_object_unref(text);
    for (cairo_surface_t* picture : images) cairo_surface_destroy(picture);
    pango_font_description_free(font);
    cairo_destroy(context);
    cairo_surface_destroy(image);
}
BENCHMARK_CAPTURE(Frame, default, Pictures::kDefaultFilter)->Name("frame|Cairo, default filter");
BENCHMARK_CAPTURE(Frame, bilinear, Pictures::kBilinear)->Name("frame|Cairo, bilinear");
BENCHMARK_CAPTURE(Frame, scaled, Pictures::kScaledOnce)->Name("frame|Cairo, pictures scaled once");

}  // namespace
