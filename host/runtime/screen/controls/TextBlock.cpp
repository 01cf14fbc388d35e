#include "runtime/screen/controls/TextBlock.h"

#include <algorithm>
#include <utility>

namespace host {

namespace {

constexpr double kShrinkPerTry = 0.94;
constexpr double kEdgePerSize = 0.12;  ///< width of the strongest edge, of the text's size

// What is left between a box and the text in it, by the alignment.
double Lead(HorizontalAlign align, double space) {
    switch (align) {
        case HorizontalAlign::kLeft:
            return 0;
        case HorizontalAlign::kCenter:
            return space / 2;
        case HorizontalAlign::kRight:
            return space;
    }
    return 0;
}

double Lead(VerticalAlign align, double space) {
    switch (align) {
        case VerticalAlign::kTop:
            return 0;
        case VerticalAlign::kMiddle:
            return space / 2;
        case VerticalAlign::kBottom:
            return space;
    }
    return 0;
}

}  // namespace

void TextBlock::SetLook(const TextLook& look) {
    if (look == look_) return;
    look_ = look;
    layout_.reset();
}

void TextBlock::SetText(const std::string& text) {
    if (text == look_.text) return;
    look_.text = text;
    layout_.reset();
}

void TextBlock::Describe(const LookContext& context, const RectF& box, Rgba color, std::optional<Edge> edge,
                         DrawList& list) {
    if (look_.text.empty() || box.width <= 0 || box.height <= 0) return;
    const bool fits =
        layout_ && shapedScale_ == context.scale && shapedBox_.width == box.width && shapedBox_.height == box.height;
    if (!fits) Shape(context, {box.width, box.height});

    const SizeF extent = layout_->Measure();
    DrawnText drawn;
    drawn.text = layout_;
    drawn.topLeft = {box.x + Lead(look_.align, std::max(0.0, box.width - extent.width)),
                     box.y + Lead(look_.verticalAlign, std::max(0.0, box.height - extent.height))};
    drawn.color = color;
    if (edge) drawn.edge = TextEdge{shapedSize_ * kEdgePerSize * edge->strength, edge->color};
    list.Add(std::move(drawn));
}

void TextBlock::Shape(const LookContext& context, SizeF box) {
    TextStyle style;
    style.weight = look_.weight;
    style.align = look_.align;
    style.wrap = look_.wrap;
    style.maxWidth = box.width;
    style.maxHeight = box.height;
    style.size = look_.size;
    for (;;) {
        layout_ = context.painter.CreateText(look_.text, style, context.scale);
        const bool fits = !layout_->IsEllipsized() && layout_->Measure().height <= box.height;
        if (fits || style.size <= look_.smallestSize) break;
        style.size = std::max(look_.smallestSize, style.size * kShrinkPerTry);
    }
    shapedSize_ = style.size;
    shapedScale_ = context.scale;
    shapedBox_ = box;
}

}  // namespace host
