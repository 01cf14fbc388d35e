#pragma once

#include <string>
#include <variant>

#include "backend/Geometry.h"
#include "runtime/package/PhoneKey.h"

namespace host {

/// Holds a finger on a control, at a fraction of its size, while the key is down.
struct TouchBinding {
    std::string control;
    PointF fraction;
};

/// Makes the microphone hear breath while the key is down.
struct BreathBinding {
    double level = 0;  ///< 0..1
};

/// What a key of the keyboard does, by the key's position (a name of the W3C's "UI Events KeyboardEvent code Values").
struct KeyBinding {
    std::string code;
    std::variant<TouchBinding, BreathBinding, PhoneKey> effect;
};

}  // namespace host
