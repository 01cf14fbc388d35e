#pragma once

#include <cairo.h>

#include <memory>

namespace host {

/// Frees Cairo's objects at the end of their owner's life.
struct CairoReleaser {
    void operator()(cairo_surface_t* surface) const noexcept { cairo_surface_destroy(surface); }
    void operator()(cairo_t* context) const noexcept { cairo_destroy(context); }
    void operator()(cairo_pattern_t* pattern) const noexcept { cairo_pattern_destroy(pattern); }
    void operator()(cairo_font_options_t* options) const noexcept { cairo_font_options_destroy(options); }
};

using CairoSurfaceHandle = std::unique_ptr<cairo_surface_t, CairoReleaser>;
using CairoContextHandle = std::unique_ptr<cairo_t, CairoReleaser>;
using CairoPatternHandle = std::unique_ptr<cairo_pattern_t, CairoReleaser>;
using CairoFontOptionsHandle = std::unique_ptr<cairo_font_options_t, CairoReleaser>;

}  // namespace host
