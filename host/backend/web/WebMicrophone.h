#pragma once

#include <array>

#include "backend/Microphone.h"

namespace host {

/// The browser's microphone. It is asked for once the player has touched the page and the ocarina has started it,
/// whichever comes last. What the user answers comes later, so that the client is told then. UI thread only.
class WebMicrophone final : public Microphone {
public:
    void Start(MicrophoneClient& client) override;
    void Stop() noexcept override;

    // From the page.
    void Unlock();
    void Open(int rate) noexcept;
    void Lose() noexcept;
    /// The first `count` frames of the buffer.
    void Hear(std::size_t count) noexcept;
    [[nodiscard]] std::span<float> Buffer() noexcept { return buffer_; }

private:
    static constexpr std::size_t kBufferFrames = 4096;

    MicrophoneClient* client_ = nullptr;
    bool isUnlocked_ = false;
    std::array<float, kBufferFrames> buffer_{};
};

}  // namespace host
