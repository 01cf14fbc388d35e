#pragma once

#include <memory>

#include "backend/Window.h"
#include "backend/cairo/CairoPainter.h"

namespace host {

/// A window of the phone's very size whose pixels are a picture in memory. Nobody touches it: a performance plays above
/// the seam. UI thread only.
class HeadlessWindow final : public Window {
public:
    explicit HeadlessWindow(CairoPainter& painter) : painter_(painter), pixels_(painter.CreateOpaqueSurface({})) {}

    [[nodiscard]] bool Open(std::string_view title, PixelSize screen, WindowListener& listener,
                            InputListener& input) override;
    void Close() override {}

    [[nodiscard]] PixelSize Size() const override { return pixels_->Size(); }
    [[nodiscard]] Surface& Pixels() override { return *pixels_; }
    void Present(std::span<const PixelRect> /*damage*/) override {}
    [[nodiscard]] Microseconds FrameInterval() const override { return kFrameInterval; }

private:
    static constexpr Microseconds kFrameInterval = 16'667;  // a sixtieth of a second

    CairoPainter& painter_;
    std::unique_ptr<Surface> pixels_;
};

}  // namespace host
