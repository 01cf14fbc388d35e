#pragma once

#include <cstdint>
#include <memory>

#include "backend/Window.h"
#include "backend/web/CanvasPainter.h"
#include "backend/web/WebAccessibility.h"

namespace host {

/// The page's canvas. What is drawn on it is shown when the browser's next frame comes; Present tells the page of it,
/// and what it is in words. UI thread only.
class WebWindow final : public Window {
public:
    explicit WebWindow(CanvasPainter& painter) : painter_(painter) {}

    [[nodiscard]] bool Open(std::string_view title, PixelSize screen, WindowListener& listener,
                            InputListener& input) override;
    void Close() override;

    [[nodiscard]] PixelSize Size() const override { return pixels_ ? pixels_->Size() : PixelSize{}; }
    [[nodiscard]] Surface& Pixels() override { return *pixels_; }
    void SetAccessible(Accessible& screen) override { accessibility_.SetSource(&screen); }
    void Present(std::span<const PixelRect> damage) override;
    [[nodiscard]] Microseconds FrameInterval() const override { return kFrameInterval; }

    // From the page; passed over while it is closed.
    void Touch(const TouchInput& touch);
    void Key(const KeyInput& key);
    void LoseInput();
    void Resize(PixelSize size);
    void Show(Visibility visibility);
    void RequestClose();
    void Activate(std::uint64_t id);
    void SetValue(std::uint64_t id, int value);

private:
    // A little less than a sixtieth of a second: a step that comes a little early is not put off to the next frame.
    static constexpr Microseconds kFrameInterval = 15'000;

    CanvasPainter& painter_;
    WebAccessibility accessibility_;
    std::unique_ptr<Surface> pixels_;
    WindowListener* listener_ = nullptr;
    InputListener* input_ = nullptr;
    Visibility visibility_ = Visibility::kVisible;
};

}  // namespace host
