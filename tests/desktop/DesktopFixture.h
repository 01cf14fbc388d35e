#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "backend/desktop/DesktopBackend.h"

/// What a window tells.
struct WindowNews final : host::WindowListener, host::InputListener {
    void OnTouch(const host::TouchInput& touch) override { touches.push_back(touch); }
    void OnKey(const host::KeyInput& key) override { keys.push_back(key); }
    void OnInputLost() override { ++inputLosses; }
    void OnResized() override { ++resizes; }
    void OnExposed() override {}
    void OnVisibilityChanged(host::Visibility visibility) override {
        visibilities.push_back(visibility == host::Visibility::kVisible);
    }
    void OnCloseRequested() override { ++closeRequests; }

    std::vector<host::TouchInput> touches;
    std::vector<host::KeyInput> keys;
    std::vector<bool> visibilities;
    int inputLosses = 0;
    int resizes = 0;
    int closeRequests = 0;
};

/// The real desktop back end on the X server of the environment.
class DesktopFixture : public ::testing::Test {
protected:
    static constexpr const char* kTitle = "Brevant's proof";

    DesktopFixture();

    /// Runs the loop until `isDone`; false when that takes longer than anything here may take.
    bool RunUntil(const std::function<bool()>& isDone);
    /// Opens the window and waits until the server shows it.
    void OpenWindow(host::PixelSize screen);

    std::unique_ptr<host::Backend> backend_ = host::CreateDesktopBackend({"/", "/"});
    host::BackendParts parts_ = backend_->Parts();
    WindowNews news_;
};
