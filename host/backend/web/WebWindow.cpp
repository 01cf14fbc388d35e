#include "backend/web/WebWindow.h"

#include <utility>

#include "backend/web/Bridge.h"

namespace host {

bool WebWindow::Open(std::string_view /*title*/, PixelSize /*screen*/, WindowListener& listener, InputListener& input) {
    pixels_ = painter_.OpenCanvas({web_window_width(), web_window_height()});
    listener_ = &listener;
    input_ = &input;
    return true;
}

void WebWindow::Close() {
    listener_ = nullptr;
    input_ = nullptr;
    accessibility_.SetSource(nullptr);
}

void WebWindow::Present(std::span<const PixelRect> /*damage*/) {
    web_window_presented();
    accessibility_.Update();
}

void WebWindow::Touch(const TouchInput& touch) {
    if (input_ != nullptr) input_->OnTouch(touch);
}

void WebWindow::Key(const KeyInput& key) {
    if (input_ != nullptr) input_->OnKey(key);
}

void WebWindow::LoseInput() {
    if (input_ != nullptr) input_->OnInputLost();
}

void WebWindow::Resize(PixelSize size) {
    if (input_ == nullptr || size == Size() || size.width <= 0 || size.height <= 0) return;
    pixels_ = painter_.OpenCanvas(size);
    input_->OnResized();
}

void WebWindow::Show(Visibility visibility) {
    if (listener_ == nullptr || std::exchange(visibility_, visibility) == visibility) return;
    listener_->OnVisibilityChanged(visibility);
}

void WebWindow::RequestClose() {
    if (listener_ != nullptr) listener_->OnCloseRequested();
}

void WebWindow::Activate(std::uint64_t id) {
    accessibility_.Activate(id);
}

void WebWindow::SetValue(std::uint64_t id, int value) {
    accessibility_.SetValue(id, value);
}

}  // namespace host
