#pragma once

#include <memory>
#include <vector>

#include "backend/Painter.h"
#include "backend/Window.h"

/// A window in memory of any size, that says what was presented on it.
class TestWindow final : public host::Window {
public:
    TestWindow(host::Painter& painter, host::PixelSize size) : painter_(painter) { Resize(size); }

    void Resize(host::PixelSize size) { pixels_ = painter_.CreateSurface(size, 1); }
    bool Open(std::string_view, host::PixelSize, host::WindowListener&, host::InputListener& input) override {
        input_ = &input;
        return true;
    }
    void Close() override {}
    host::PixelSize Size() const override { return pixels_->Size(); }
    host::Surface& Pixels() override { return *pixels_; }
    void Present(std::span<const host::PixelRect> damage) override { presented_.assign(damage.begin(), damage.end()); }
    host::Microseconds FrameInterval() const override { return kFrameInterval; }

    static constexpr host::Microseconds kFrameInterval = 16'000;
    std::vector<host::PixelRect> presented_;  ///< at the last frame
    host::InputListener* input_ = nullptr;    ///< since it was opened

private:
    host::Painter& painter_;
    std::unique_ptr<host::Surface> pixels_;
};
