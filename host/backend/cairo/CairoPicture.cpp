#include "backend/cairo/CairoPicture.h"

#include <algorithm>
#include <utility>

#include "backend/cairo/PixelScaling.h"

namespace host {

namespace {

// A picture is seldom on the screen at more than two sizes; the third is for the moment in which a window is resized.
constexpr std::size_t kCopies = 3;
// 64 MiB: beyond the largest screen there is, only an odd rectangle asks for more.
constexpr std::int64_t kLargestCopyPixels = std::int64_t{16} * 1024 * 1024;

CairoSurfaceHandle Scale(cairo_surface_t* image, PixelSize size) {
    CairoSurfaceHandle scaled(
        cairo_image_surface_create(cairo_image_surface_get_format(image), size.width, size.height));
    if (cairo_surface_status(scaled.get()) != CAIRO_STATUS_SUCCESS) return nullptr;
    ScalePixels(RowsOf(image), RowsOf(scaled.get()));
    cairo_surface_mark_dirty(scaled.get());
    return scaled;
}

}  // namespace

CairoPicture::CairoPicture(CairoSurfaceHandle image) : image_(std::move(image)) {}

PixelSize CairoPicture::Size() const {
    return {cairo_image_surface_get_width(image_.get()), cairo_image_surface_get_height(image_.get())};
}

cairo_surface_t* CairoPicture::ScaledTo(PixelSize size) const {
    if (size.width <= 0 || size.height <= 0) return nullptr;
    if (size == Size()) return image_.get();
    if (std::int64_t{size.width} * size.height > kLargestCopyPixels) return nullptr;

    const auto found =
        std::find_if(copies_.begin(), copies_.end(), [&](const ScaledCopy& copy) { return copy.size == size; });
    if (found != copies_.end()) {
        std::rotate(copies_.begin(), found, found + 1);
        return copies_.front().image.get();
    }

    CairoSurfaceHandle scaled = Scale(image_.get(), size);
    if (!scaled) return nullptr;
    if (copies_.size() == kCopies) copies_.pop_back();
    copies_.insert(copies_.begin(), ScaledCopy{size, std::move(scaled)});
    return copies_.front().image.get();
}

}  // namespace host
