#pragma once

namespace Tizen {
namespace Ui {

/// The phone's own keys, as key listeners are told of them.
enum KeyCode {
    KEY_BACK = 157,
};

}  // namespace Ui
}  // namespace Tizen
