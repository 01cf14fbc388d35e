#pragma once

#include <memory>
#include <optional>
#include <variant>

#include "backend/Painter.h"

namespace host {

// The drawing operations on a control, in the control's own coordinates. Each is a plain value and named after the
// operation of Surface that paints it.

struct FilledRectangle {
    RectF rect;
    Rgba color;
    friend bool operator==(const FilledRectangle&, const FilledRectangle&) = default;
};

struct StrokedRectangle {
    RectF rect;
    double lineWidth = 0;
    Rgba color;
    friend bool operator==(const StrokedRectangle&, const StrokedRectangle&) = default;
};

struct FilledEllipse {
    RectF rect;
    Rgba color;
    friend bool operator==(const FilledEllipse&, const FilledEllipse&) = default;
};

struct StrokedEllipse {
    RectF rect;
    double lineWidth = 0;
    Rgba color;
    friend bool operator==(const StrokedEllipse&, const StrokedEllipse&) = default;
};

struct FilledRoundRectangle {
    RectF rect;
    SizeF arc;  ///< the whole axes of the corners' ellipse
    Rgba color;
    friend bool operator==(const FilledRoundRectangle&, const FilledRoundRectangle&) = default;
};

struct StrokedRoundRectangle {
    RectF rect;
    SizeF arc;  ///< the whole axes of the corners' ellipse
    double lineWidth = 0;
    Rgba color;
    friend bool operator==(const StrokedRoundRectangle&, const StrokedRoundRectangle&) = default;
};

struct FilledGradient {
    RectF rect;
    SizeF arc;  ///< the whole axes of the corners' ellipse
    Rgba top;
    Rgba bottom;
    friend bool operator==(const FilledGradient&, const FilledGradient&) = default;
};

struct DrawnPicture {
    RectF rect;
    std::shared_ptr<const Picture> picture;
    friend bool operator==(const DrawnPicture&, const DrawnPicture&) = default;
};

struct TextEdge {
    double width = 0;
    Rgba color;
    friend bool operator==(const TextEdge&, const TextEdge&) = default;
};

struct DrawnText {
    std::shared_ptr<const TextLayout> text;
    PointF topLeft;
    Rgba color;
    std::optional<TextEdge> edge;
    friend bool operator==(const DrawnText&, const DrawnText&) = default;
};

/// All that was drawn before, already painted at the present scale.
struct EarlierDrawing {
    std::shared_ptr<const Surface> surface;
    friend bool operator==(const EarlierDrawing&, const EarlierDrawing&) = default;
};

using DrawOperation =
    std::variant<FilledRectangle, StrokedRectangle, FilledEllipse, StrokedEllipse, FilledRoundRectangle,
                 StrokedRoundRectangle, FilledGradient, DrawnPicture, DrawnText, EarlierDrawing>;

}  // namespace host
