#include "Tizen/Ui/Controls/Panel.h"

#include "runtime/screen/Screen.h"
#include "runtime/screen/controls/BoxNode.h"

namespace Tizen {
namespace Ui {
namespace Controls {

Panel::Panel() = default;

Panel::~Panel() = default;

void Panel::ApplyLayout(const host::LayoutControl& layout) {
    Container::ApplyLayout(layout);
    auto& node = static_cast<host::BoxNode&>(GetNode());
    node.SetLook(layout.box);
    node.SetPicture(GetScreen().GetPackage().PictureNamed(layout.picture));
}

}  // namespace Controls
}  // namespace Ui
}  // namespace Tizen
