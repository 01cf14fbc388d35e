#pragma once

#include "Tizen/Base/Types.h"

namespace Tizen {
namespace Ui {

class Control;

/// Settings of the touch screen. UI thread only.
class Touch {
public:
    /// With it, each finger on the control has its own press and release; without, only the first finger is reported.
    result SetMultipointEnabled(const Control& control, bool enable);
};

}  // namespace Ui
}  // namespace Tizen
