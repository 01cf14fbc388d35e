#pragma once

#include <optional>
#include <string_view>

#include "backend/Window.h"
#include "runtime/package/PhoneKey.h"
#include "runtime/screen/input/Fingers.h"

namespace host {

/// Hears of all that is done on the screen, before it acts. Places are in the phone's pixels. UI thread.
class InputWatcher {
public:
    /// A lift without a place is where the finger last was.
    virtual void OnFingerUsed(const FingerId& finger, TouchPhase phase, std::optional<PointF> place) = 0;
    virtual void OnKeyUsed(std::string_view code, KeyPhase phase) = 0;
    virtual void OnPhoneKeyUsed(PhoneKey key, KeyPhase phase) = 0;
    /// Everything that is down is lifted, and nothing acts on it.
    virtual void OnAllLifted() = 0;

protected:
    ~InputWatcher() = default;
};

}  // namespace host
