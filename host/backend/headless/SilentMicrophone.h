#pragma once

#include "backend/Microphone.h"

namespace host {

/// A microphone that is always there and never delivers. What a headless run hears is made above the seam, by the clock
/// that everything else there lives by.
class SilentMicrophone final : public Microphone {
public:
    void Start(const MicrophoneFormat& /*format*/, MicrophoneClient& /*client*/) override {}
    void Stop() noexcept override {}
};

}  // namespace host
