#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "backend/Painter.h"

namespace host {

/// One drawing operation on a control, in the control's own coordinates.
struct DrawOperation {
    enum class Kind {
        kClear,
        kFillRectangle,
        kStrokeRectangle,
        kFillEllipse,
        kStrokeEllipse,
        kFillRoundRectangle,
        kStrokeRoundRectangle,
        kFillGradient,
        kLine,
        kPicture,
        kText,
    };

    Kind kind = Kind::kClear;
    RectF rect;  ///< of a line: from its start by width and height to its end; of a text: its top left alone
    double arcWidth = 0;
    double arcHeight = 0;
    double lineWidth = 0;  ///< of a text: the width of its edge, or 0
    Rgba color;
    Rgba secondColor;  ///< the gradient's lower colour, or the text's edge
    std::shared_ptr<const Picture> picture;
    std::shared_ptr<const TextLayout> text;

    friend bool operator==(const DrawOperation& left, const DrawOperation& right);
};

/// What a control shows, as the operations that draw it. Two lists that are equal give the same pixels, so a control
/// that is asked to draw itself and has nothing new to say costs neither painting nor presenting. A plain value.
class DrawList {
public:
    /// A list for a control of that size. What lies wholly under an opaque operation is left out.
    explicit DrawList(SizeF size = {}) : size_(size) {}

    void Add(DrawOperation operation);
    [[nodiscard]] bool IsEmpty() const { return operations_.empty(); }
    [[nodiscard]] SizeF Size() const { return size_; }

    /// The one colour of the whole control, where the list says nothing else.
    [[nodiscard]] std::optional<Rgba> PlainColor() const;
    /// Where the control hides all that is under it, in pixels of a surface that shows the list: the largest such part
    /// that is known.
    [[nodiscard]] PixelRect OpaquePart(PixelSize surfaceSize, double scale) const;

    /// Makes the list the whole content of a surface of the control's own.
    void Paint(Surface& surface) const;
    /// Whether PaintOver can be used at that scale: texts are shaped for surfaces of their own scale.
    [[nodiscard]] bool CanPaintOver(double scale) const { return scale == 1 || !hasText_; }
    /// Paints the list over what `surface`, whose scale is 1, shows at `place`, `scale` pixels to a unit. The clip must
    /// lie within `place`.
    void PaintOver(Surface& surface, const PixelRect& place, double scale) const;

    friend bool operator==(const DrawList& left, const DrawList& right);

private:
    /// Whether the rectangle reaches to every edge of the control.
    [[nodiscard]] bool Covers(const RectF& rect) const;
    [[nodiscard]] bool ReplacesEverything(const DrawOperation& operation) const;

    SizeF size_;
    bool hasText_ = false;
    std::vector<DrawOperation> operations_;
};

}  // namespace host
