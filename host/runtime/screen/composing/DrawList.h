#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

#include "backend/Painter.h"
#include "runtime/screen/composing/DrawOperation.h"

namespace host {

/// What a control shows, as the operations that draw it. Two lists that are equal give the same pixels, so a control
/// that is asked to draw itself and has nothing new to say costs neither painting nor presenting. A plain value.
class DrawList {
public:
    /// A list for a control of that size. What lies wholly under an opaque operation is left out.
    explicit DrawList(SizeF size = {}) : size_(size) {}

    void Add(DrawOperation operation);
    /// `painted` shows the list; from here on the list is that surface and what is added to it.
    void ReplaceBy(std::shared_ptr<const Surface> painted);
    [[nodiscard]] bool IsEmpty() const { return operations_.empty(); }
    [[nodiscard]] std::size_t Length() const { return operations_.size(); }
    [[nodiscard]] SizeF Size() const { return size_; }

    /// The one colour of the whole control, where the list says nothing else.
    [[nodiscard]] std::optional<Rgba> PlainColor() const;
    /// Where the control hides all that is under it, in pixels of a surface that shows the list: the largest such part
    /// that is known.
    [[nodiscard]] PixelRect OpaquePart(PixelSize surfaceSize, double scale) const;

    /// Makes the list the whole content of a surface of the control's own.
    void Paint(Surface& surface) const;
    /// Whether PaintOver can be used at that scale: texts are shaped, and earlier drawings painted, for surfaces of
    /// their own scale.
    [[nodiscard]] bool CanPaintOver(double scale) const;
    /// Paints the list over what `surface`, whose scale is 1, shows at `place`, `scale` pixels to a unit. The clip must
    /// lie within `place`.
    void PaintOver(Surface& surface, const PixelRect& place, double scale) const;

    friend bool operator==(const DrawList& left, const DrawList& right) = default;

private:
    /// Whether the rectangle reaches to every edge of the control.
    [[nodiscard]] bool Covers(const RectF& rect) const;
    /// The opaque colour that the operation gives to the whole control; null for every other operation.
    [[nodiscard]] const Rgba* CoveringColor(const DrawOperation& operation) const;

    SizeF size_;
    bool hasText_ = false;
    std::vector<DrawOperation> operations_;
};

}  // namespace host
