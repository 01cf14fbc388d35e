#pragma once

#include <pango/pangocairo.h>

#include <memory>
#include <string>

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

/// The family that every text is set in, as the pictures and layouts were drawn with it. Fontconfig finds the scripts
/// that it lacks elsewhere, and the language of the texts decides where.
inline constexpr const char* kFontFamily = "Noto Sans";

/// Finds fonts and says how their glyphs are drawn: without hints and in whole pixels, whatever the desktop's settings
/// are, so that a text is set alike on every machine that has the fonts. UI thread only.
class PangoFonts {
public:
    /// `language` is that of the texts, as in SetLanguage.
    explicit PangoFonts(const std::string& language);

    /// Texts that are shaped from now on are in this language ("ja"). Without one, Pango would take the characters that
    /// languages share from the font of the environment's locale.
    void SetLanguage(const std::string& language);

    [[nodiscard]] PangoContext* Context() const { return context_.get(); }

private:
    PangoFontMapHandle fontMap_;
    PangoContextHandle context_;
};

}  // namespace host
