#pragma once

#include <memory>

namespace host {
enum class ControlKind;
}

namespace Tizen {
namespace Ui {

class Control;

/// A new control of the class that a layout's element is called after; null for a form or popup, which lie in no other
/// control.
std::unique_ptr<Control> MakeLayoutControl(host::ControlKind kind);

}  // namespace Ui
}  // namespace Tizen
