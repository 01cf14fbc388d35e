#pragma once

#include <vector>

#include "backend/Painter.h"
#include "backend/cairo/CairoHandles.h"

namespace host {

/// A decoded picture and the few scaled copies of it that were drawn last. Scaling costs ten times a copy, and a
/// control shows its picture at one size, so each size is scaled once and well. UI thread only, as the copies are
/// shared.
class CairoPicture final : public Picture {
public:
    /// Takes over an image surface that has no error.
    explicit CairoPicture(CairoSurfaceHandle image);

    [[nodiscard]] PixelSize Size() const override;

    /// The picture at `size` device pixels, which holds until the next call. Null when `size` is empty, too large to
    /// keep, or there is no memory; the caller then draws Original() scaled.
    [[nodiscard]] cairo_surface_t* ScaledTo(PixelSize size) const;
    [[nodiscard]] cairo_surface_t* Original() const { return image_.get(); }

private:
    struct ScaledCopy {
        PixelSize size;
        CairoSurfaceHandle image;
    };

    CairoSurfaceHandle image_;
    mutable std::vector<ScaledCopy> copies_;  ///< the one drawn last stands first
};

}  // namespace host
