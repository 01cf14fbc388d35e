#include "runtime/performance/Performance.h"

namespace host {

const std::string* Performance::ControlOf(const PerformanceAction& action) {
    if (const auto* press = std::get_if<PressAction>(&action)) return &press->control;
    if (const auto* tap = std::get_if<TapAction>(&action)) return &tap->control;
    if (const auto* release = std::get_if<ReleaseAction>(&action)) return &release->control;
    if (const auto* pick = std::get_if<PickAction>(&action)) return &pick->control;
    return nullptr;
}

}  // namespace host
