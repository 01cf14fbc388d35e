#include "backend/cairo/PangoFonts.h"

#include "backend/cairo/CairoHandles.h"

namespace host {

PangoFonts::PangoFonts(const std::string& language)
    : fontMap_(pango_cairo_font_map_new()), context_(pango_font_map_create_context(fontMap_.get())) {
    const CairoFontOptionsHandle options(cairo_font_options_create());
    cairo_font_options_set_antialias(options.get(), CAIRO_ANTIALIAS_GRAY);
    cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
    pango_cairo_context_set_font_options(context_.get(), options.get());
    // Cairo puts glyphs on whole pixels anyway; with advances in whole pixels the gaps between them stay even.
    pango_context_set_round_glyph_positions(context_.get(), TRUE);
    pango_context_set_base_dir(context_.get(), PANGO_DIRECTION_LTR);
    SetLanguage(language);
}

void PangoFonts::SetLanguage(const std::string& language) {
    pango_context_set_language(context_.get(), pango_language_from_string(language.c_str()));
}

}  // namespace host
