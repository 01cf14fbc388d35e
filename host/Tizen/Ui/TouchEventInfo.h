#pragma once

#include "Tizen/Graphics/Point.h"

namespace Tizen {
namespace Ui {

/// What a touch event tells beside its place: which finger it is. A plain value.
class TouchEventInfo {
public:
    TouchEventInfo() = default;
    TouchEventInfo(unsigned long pointId, const Tizen::Graphics::Point& currentPosition)
        : pointId_(pointId), currentPosition_(currentPosition) {}

    /// The same from a finger's press to its release; no two fingers that are down share one.
    unsigned long GetPointId() const { return pointId_; }
    /// In the control's own coordinates.
    Tizen::Graphics::Point GetCurrentPosition() const { return currentPosition_; }

private:
    unsigned long pointId_ = 0;
    Tizen::Graphics::Point currentPosition_;
};

}  // namespace Ui
}  // namespace Tizen
