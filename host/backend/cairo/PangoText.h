#pragma once

#include <string_view>

#include "backend/Painter.h"
#include "backend/cairo/CairoHandles.h"
#include "backend/cairo/PangoFonts.h"

namespace host {

/// A text shaped by Pango in device pixels, so that its glyphs stand on whole ones. UI thread only.
class PangoText final : public TextLayout {
public:
    /// `scale` is that of the surfaces it will be drawn on. Bytes that are no UTF-8 show as replacement characters.
    PangoText(const PangoFonts& fonts, std::string_view utf8, const TextStyle& style, double scale);

    [[nodiscard]] SizeF Measure() const override;
    [[nodiscard]] bool IsEllipsized() const override;

    /// Draws the text in the context's colour with the top left of its extent there. The context's unit must be a
    /// device pixel, here and below.
    void Show(cairo_t* context, double left, double top) const;
    /// Draws, in the context's colour, all that is within `edgeWidth` device pixels of a glyph.
    void ShowEdge(cairo_t* context, double left, double top, double edgeWidth) const;

private:
    PangoLayoutHandle layout_;
    PangoRectangle extent_{};  ///< in Pango's units
    double maxWidth_;          ///< in the surface's units; 0: none
    double scale_;
    /// The stroked outlines as a mask: stroking takes a hundred times as long as drawing the glyphs.
    struct Edge {
        double width = 0;  ///< in device pixels
        int left = 0;      ///< from the extent's top left
        int top = 0;
        CairoSurfaceHandle mask;
    };

    void MakeEdge(double width) const;

    mutable Edge edge_;
};

}  // namespace host
