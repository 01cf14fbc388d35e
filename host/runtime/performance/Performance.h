#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "backend/Clock.h"
#include "backend/Geometry.h"
#include "backend/Window.h"
#include "runtime/package/PhoneKey.h"

namespace host {

// The actions of a performance file, one type each.

struct TouchAction {
    int finger = 0;
    TouchPhase phase = TouchPhase::kDown;
    PointF position;  ///< the phone's pixels; not used by a lift
};
struct PressAction {
    std::string control;
    PointF fraction{0.5, 0.5};
};
struct ReleaseAction {
    std::string control;
};
struct TapAction {
    std::string control;
    PointF fraction{0.5, 0.5};
};
enum class KeyDirection { kPress, kRelease };
struct KeyAction {
    std::variant<PhoneKey, std::string> key;  ///< one of the phone, or the code of one of the keyboard
    KeyDirection direction = KeyDirection::kPress;
};
struct BreathAction {
    double level = 0;  ///< 0..1 of full scale
};
/// Every block that the microphone delivers from now on has exactly this peak, until the next breath or peak.
struct PeakAction {
    std::uint8_t peak = 0;
};
struct RingtoneAction {
    int volume = 0;  ///< 0..15
};
struct PickAction {
    std::string control;
    Rgba color;
};
enum class StateChange { kBackground, kForeground, kScreenOff, kScreenOn };
struct StateAction {
    StateChange change = StateChange::kBackground;
};
enum class Device { kSpeaker, kMicrophone };
enum class DeviceChange { kLost, kRestored };
struct DeviceAction {
    Device device = Device::kSpeaker;
    DeviceChange change = DeviceChange::kLost;
};
struct ScreenshotAction {
    std::string file;
};
struct QuitAction {};

using PerformanceAction =
    std::variant<TouchAction, PressAction, ReleaseAction, TapAction, KeyAction, BreathAction, PeakAction,
                 RingtoneAction, PickAction, StateAction, DeviceAction, ScreenshotAction, QuitAction>;

/// What a player and the world around the phone do, and when. Plain data, any thread; PerformanceReader makes it of a
/// file.
class Performance {
public:
    struct Step {
        Microseconds time = 0;  ///< since the start
        int line = 0;           ///< in the file, from 1
        PerformanceAction action;
    };

    /// One in which nothing is done.
    Performance() = default;
    /// The steps in the order of their times; `name` is that of the file, for messages.
    Performance(std::string name, std::vector<Step> steps) : name_(std::move(name)), steps_(std::move(steps)) {}

    [[nodiscard]] const std::vector<Step>& Steps() const noexcept { return steps_; }
    [[nodiscard]] const std::string& Name() const noexcept { return name_; }
    /// The name of the control that a step's action is about, or null.
    [[nodiscard]] static const std::string* ControlOf(const PerformanceAction& action);

private:
    std::string name_;
    std::vector<Step> steps_;
};

}  // namespace host
