#include "Tizen/Ui/LayoutControls.h"

#include "Tizen/Ui/Controls/Button.h"
#include "Tizen/Ui/Controls/CheckButton.h"
#include "Tizen/Ui/Controls/ColorPicker.h"
#include "Tizen/Ui/Controls/Label.h"
#include "Tizen/Ui/Controls/Panel.h"
#include "runtime/package/Layout.h"

namespace Tizen {
namespace Ui {

std::unique_ptr<Control> MakeLayoutControl(host::ControlKind kind) {
    switch (kind) {
        case host::ControlKind::kLabel:
            return std::make_unique<Controls::Label>();
        case host::ControlKind::kButton:
            return std::make_unique<Controls::Button>();
        case host::ControlKind::kPanel:
            return std::make_unique<Controls::Panel>();
        case host::ControlKind::kCheckButton:
            return std::make_unique<Controls::CheckButton>();
        case host::ControlKind::kColorPicker:
            return std::make_unique<Controls::ColorPicker>();
        case host::ControlKind::kForm:
        case host::ControlKind::kPopup:
            break;
    }
    return nullptr;
}

}  // namespace Ui
}  // namespace Tizen
