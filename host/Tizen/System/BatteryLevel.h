#pragma once

namespace Tizen {
namespace System {

/// How full the battery is, in the steps at which an application is told.
enum BatteryLevel {
    BATTERY_EMPTY,
    BATTERY_CRITICAL,
    BATTERY_LOW,
    BATTERY_HIGH,
    BATTERY_FULL,
};

}  // namespace System
}  // namespace Tizen
