#pragma once

#include <pango/pangocairo.h>

#include <memory>

namespace host {

/// Frees Pango's objects at the end of their owner's life.
struct PangoReleaser {
    void operator()(PangoContext* context) const noexcept { g_object_unref(context); }
    void operator()(PangoLayout* layout) const noexcept { g_object_unref(layout); }
    void operator()(PangoFontMap* fontMap) const noexcept { g_object_unref(fontMap); }
    void operator()(PangoFontDescription* font) const noexcept { pango_font_description_free(font); }
};

using PangoContextHandle = std::unique_ptr<PangoContext, PangoReleaser>;
using PangoLayoutHandle = std::unique_ptr<PangoLayout, PangoReleaser>;
using PangoFontMapHandle = std::unique_ptr<PangoFontMap, PangoReleaser>;
using PangoFontDescriptionHandle = std::unique_ptr<PangoFontDescription, PangoReleaser>;

/// Finds fonts and says how their glyphs are drawn: without hints and in whole pixels, whatever the desktop's settings
/// are, so that a text is set alike on every machine that has the fonts. UI thread only.
class PangoFonts {
public:
    PangoFonts();

    [[nodiscard]] PangoContext* Context() const { return context_.get(); }

private:
    PangoFontMapHandle fontMap_;
    PangoContextHandle context_;
};

}  // namespace host
