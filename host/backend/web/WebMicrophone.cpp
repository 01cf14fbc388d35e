#include "backend/web/WebMicrophone.h"

#include <algorithm>
#include <utility>

#include "backend/web/Bridge.h"

namespace host {

void WebMicrophone::Start(MicrophoneClient& client) {
    Stop();
    client_ = &client;
    if (isUnlocked_) web_microphone_start();
}

void WebMicrophone::Stop() noexcept {
    if (std::exchange(client_, nullptr) != nullptr && isUnlocked_) web_microphone_stop();
}

void WebMicrophone::Unlock() {
    if (!std::exchange(isUnlocked_, true) && client_ != nullptr) web_microphone_start();
}

void WebMicrophone::Open(int rate) noexcept {
    if (client_ != nullptr) client_->OnMicrophoneOpened(rate);
}

void WebMicrophone::Lose() noexcept {
    if (client_ != nullptr) client_->OnMicrophoneLost();
}

void WebMicrophone::Hear(std::size_t count) noexcept {
    if (client_ != nullptr) client_->OnFramesHeard(std::span(buffer_).first(std::min(count, buffer_.size())));
}

}  // namespace host
