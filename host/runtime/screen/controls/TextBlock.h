#pragma once

#include <memory>
#include <optional>
#include <string>

#include "backend/Painter.h"
#include "runtime/package/Layout.h"
#include "runtime/screen/Node.h"
#include "runtime/screen/composing/DrawList.h"

namespace host {

/// A text in a box. It is shaped when it or its box has changed, and kept otherwise. UI thread only.
class TextBlock {
public:
    void SetLook(const TextLook& look);
    void SetText(const std::string& text);
    [[nodiscard]] const TextLook& Look() const { return look_; }

    /// The edge of a text's glyphs.
    struct Edge {
        Rgba color;
        double strength = 1;  ///< share of the widest that looks good, 0..1
    };
    /// Adds the text to `list` so that it lies in `box`, shrunk where it must be. With `edge`, its glyphs get an edge.
    void Describe(const LookContext& context, const RectF& box, Rgba color, std::optional<Edge> edge, DrawList& list);

private:
    void Shape(const LookContext& context, SizeF box);

    TextLook look_;
    std::shared_ptr<const TextLayout> layout_;
    double shapedSize_ = 0;
    double shapedScale_ = 0;
    SizeF shapedBox_;
};

}  // namespace host
