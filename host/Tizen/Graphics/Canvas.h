#pragma once

#include <memory>

#include "Tizen/Base/Types.h"
#include "Tizen/Graphics/Color.h"
#include "Tizen/Graphics/Dimension.h"
#include "Tizen/Graphics/Rectangle.h"

namespace host {
class Node;
}  // namespace host

namespace Tizen {
namespace Ui {
class Control;
}

namespace Graphics {

class Bitmap;

/// Draws on one control, in the control's own coordinates and clipped to it. It can be kept as long as one likes: it
/// goes on through changes of the display, and once its control is gone every operation fails with E_INVALID_STATE.
/// Colours blend by their alpha. UI thread only.
class Canvas {
public:
    ~Canvas();
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    /// The control's whole area; empty once the control is gone.
    Rectangle GetBounds() const;

    /// For the outlines. Opaque black until it is set.
    result SetForegroundColor(const Color& color);
    /// Pixels, from 1 up; 1 until it is set. E_INVALID_ARG for less. Half of an outline lies outside of its rectangle.
    result SetLineWidth(int width);

    result FillRectangle(const Color& color, const Rectangle& rect);
    result FillEllipse(const Color& color, const Rectangle& rect);
    /// `arcDimension` is the width and height of the whole ellipse of which each corner is a quarter.
    result FillRoundRectangle(const Color& color, const Rectangle& rect, const Dimension& arcDimension);
    result DrawRoundRectangle(const Rectangle& rect, const Dimension& arcDimension);
    /// Scaled into `rect`.
    result DrawBitmap(const Rectangle& rect, const Bitmap& bitmap);

private:
    friend class Tizen::Ui::Control;

    explicit Canvas(std::weak_ptr<host::Node> pNode);

    /// E_INVALID_ARG for an empty rectangle.
    template <typename Operation>
    result Draw(const Rectangle& rect, Operation operation);

    std::weak_ptr<host::Node> pNode_;
    Color foregroundColor_;
    int lineWidth_ = 1;
};

}  // namespace Graphics
}  // namespace Tizen
