#pragma once

#include "backend/Microphone.h"

namespace host {

/// A microphone that is always there and never delivers. What a headless run hears is made above the seam, by the clock
/// that everything else there lives by.
class SilentMicrophone final : public Microphone {
public:
    void Start(MicrophoneClient& client) override {
        constexpr int kRate = 44'100;
        client.OnMicrophoneOpened(kRate);
    }
    void Stop() noexcept override {}
};

}  // namespace host
