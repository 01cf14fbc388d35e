#pragma once

#include "Palette.h"

#include <cairo.h>

#include <functional>
#include <string>
#include <vector>

namespace pictures {

/// Pixels of a picture for each design unit: pictures are stored for a screen 1080 pixels wide, the designs are 720
/// wide.
inline constexpr double kPixelsPerUnit = 1.5;

/// The opacity of a picture file. An opaque file is smaller and is faster to decode.
enum class Ground { kTransparent, kOpaque };

/// One picture in the making: a Cairo image and the context that draws on it in design units.
/// Single threaded. Failures of Cairo throw std::runtime_error with what failed.
class Picture {
public:
    /// @param width,height in design units; @param scale pixels a unit.
    Picture(double width, double height, double scale = kPixelsPerUnit, Ground ground = Ground::kTransparent);
    ~Picture();
    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;

    cairo_t* Pen() const { return pen_; }
    cairo_surface_t* Surface() const { return surface_; }
    void SavePng(const std::string& path) const;

private:
    cairo_surface_t* surface_ = nullptr;
    cairo_t* pen_ = nullptr;
};

using Shape = std::function<void(cairo_t*)>;

struct Stop {
    double offset;
    Colour colour;
};

void SetColour(cairo_t* pen, const Colour& colour);
void RoundedRectangle(cairo_t* pen, double x, double y, double width, double height, double radius);
void Circle(cairo_t* pen, double x, double y, double radius);
void Line(cairo_t* pen, double x1, double y1, double x2, double y2);
/// Strokes the current path with round ends and joins.
void StrokeRound(cairo_t* pen, double width, const Colour& colour);
void FillWith(cairo_t* pen, const Colour& colour);
void FillLinear(cairo_t* pen, double x1, double y1, double x2, double y2, const std::vector<Stop>& stops);
void FillRadial(cairo_t* pen, double x, double y, double radius, const std::vector<Stop>& stops);

/// Lays @p shape, blurred, on the picture: shadows, glows and soft light. Not for SVG surfaces, which have no blur.
/// @param blur the radius of the softness in the pen's units.
void FillSoft(cairo_t* pen, const Shape& shape, double blur, const Colour& colour);

/// Writes one line in the interface's typeface, centred on the point both ways by its capital letters.
/// @return the line's width.
double TextCentred(cairo_t* pen, const std::string& text, double x, double y, double size, const Colour& colour);

}  // namespace pictures
