#pragma once

#include "backend/Painter.h"

namespace host {

/// A decoded picture in the page's keeping.
class CanvasPicture final : public Picture {
public:
    /// `pixels` are red, green, blue and alpha, a byte each.
    CanvasPicture(int number, PixelSize size, const void* pixels);
    ~CanvasPicture() override;
    CanvasPicture(const CanvasPicture&) = delete;
    CanvasPicture& operator=(const CanvasPicture&) = delete;

    [[nodiscard]] PixelSize Size() const override { return size_; }
    [[nodiscard]] int Number() const noexcept { return number_; }

private:
    int number_;
    PixelSize size_;
};

}  // namespace host
