#pragma once

namespace Tizen {
namespace Ui {
namespace Controls {

/// In what state a button shows a colour.
enum ButtonStatus {
    BUTTON_STATUS_NORMAL = 0,
    BUTTON_STATUS_PRESSED = 1,
};

}  // namespace Controls
}  // namespace Ui
}  // namespace Tizen
