#pragma once

#include "backend/Painter.h"

namespace host {

/// A decoded picture in the page's keeping.
class CanvasPicture final : public Picture {
public:
    /// The page has the pixels of that number already.
    CanvasPicture(int number, PixelSize size) : number_(number), size_(size) {}
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
