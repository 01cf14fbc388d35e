#pragma once

#include <memory>

#include "backend/Window.h"
#include "backend/web/CanvasPainter.h"

namespace host {

/// The page's canvas. What is drawn on it is shown when the browser's next frame comes, so Present has nothing to do.
/// UI thread only.
class WebWindow final : public Window {
public:
    explicit WebWindow(CanvasPainter& painter) : painter_(painter) {}

    [[nodiscard]] bool Open(std::string_view title, PixelSize screen, WindowListener& listener,
                            InputListener& input) override;
    void Close() override;

    [[nodiscard]] PixelSize Size() const override { return pixels_ ? pixels_->Size() : PixelSize{}; }
    [[nodiscard]] Surface& Pixels() override { return *pixels_; }
    void Present(std::span<const PixelRect> /*damage*/) override {}
    [[nodiscard]] Microseconds FrameInterval() const override { return kFrameInterval; }

    // From the page; passed over while it is closed.
    void Touch(const TouchInput& touch);
    void Key(const KeyInput& key);
    void LoseInput();
    void Resize(PixelSize size);
    void Show(Visibility visibility);
    void RequestClose();

private:
    // A little less than a sixtieth of a second: a step that comes a little early is not put off to the next frame.
    static constexpr Microseconds kFrameInterval = 15'000;

    CanvasPainter& painter_;
    std::unique_ptr<Surface> pixels_;
    WindowListener* listener_ = nullptr;
    InputListener* input_ = nullptr;
    Visibility visibility_ = Visibility::kVisible;
};

}  // namespace host
