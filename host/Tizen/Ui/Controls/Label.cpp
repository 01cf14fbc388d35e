#include "Tizen/Ui/Controls/Label.h"

#include "runtime/screen/Screen.h"
#include "runtime/screen/controls/BoxNode.h"

namespace Tizen {
namespace Ui {
namespace Controls {

using Tizen::Base::String;
using Tizen::Graphics::Bitmap;

Label::Label() : Control(std::make_unique<host::BoxNode>(GetScreen())) {}

Label::~Label() = default;

result Label::SetText(const String& text) {
    static_cast<host::BoxNode&>(GetNode()).SetText(text.ToUtf8());
    return E_SUCCESS;
}

result Label::SetBackgroundBitmap(const Bitmap& bitmap) {
    TraceBitmap(bitmap.GetFileName());
    static_cast<host::BoxNode&>(GetNode()).SetPicture(bitmap.GetPicture());
    return E_SUCCESS;
}

void Label::ApplyLayout(const host::LayoutControl& layout) {
    Control::ApplyLayout(layout);
    auto& node = static_cast<host::BoxNode&>(GetNode());
    node.SetLook(layout.box);
    node.SetPicture(GetScreen().GetPackage().PictureNamed(layout.picture));
    node.SetTextLook(layout.text);
}

}  // namespace Controls
}  // namespace Ui
}  // namespace Tizen
