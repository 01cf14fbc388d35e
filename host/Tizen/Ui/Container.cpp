#include "Tizen/Ui/Container.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "Tizen/Ui/LayoutControls.h"
#include "runtime/package/Layout.h"
#include "runtime/screen/Screen.h"
#include "runtime/screen/controls/BoxNode.h"

namespace Tizen {
namespace Ui {

using Tizen::Base::String;

Container::Container() : Container(std::make_unique<host::BoxNode>(GetScreen())) {}

Container::Container(std::unique_ptr<host::Node> pNode) : Control(std::move(pNode)) {}

Container::~Container() {
    while (!children_.empty()) {
        // The child must not find its way back to a container that is half gone.
        const std::unique_ptr<Control> pChild = std::move(children_.back());
        children_.pop_back();
        pChild->pParent_ = nullptr;
    }
}

result Container::Construct() {
    return E_SUCCESS;
}

result Container::AddControl(const Control& control) {
    if (control.pParent_ != nullptr || &control == this) return E_INVALID_ARG;
    // The framework's signature promises no change, yet its contract is that the container owns the control from here
    // on.
    auto& added = const_cast<Control&>(control);
    Adopt(std::unique_ptr<Control>(&added));
    added.Initialize();
    return E_SUCCESS;
}

result Container::RemoveControl(const Control& control) {
    if (control.pParent_ != this) return E_OBJ_NOT_FOUND;
    const_cast<Control&>(control).Terminate();
    Release(control);
    return E_SUCCESS;
}

Control* Container::GetControl(const String& name, bool recursive) const {
    for (const auto& pChild : children_) {
        if (pChild->GetName() == name) return pChild.get();
    }
    if (!recursive) return nullptr;
    for (const auto& pChild : children_) {
        const auto* pContainer = dynamic_cast<const Container*>(pChild.get());
        Control* pFound = pContainer == nullptr ? nullptr : pContainer->GetControl(name, true);
        if (pFound != nullptr) return pFound;
    }
    return nullptr;
}

Control* Container::GetControl(int index) const {
    if (index < 0 || index >= GetControlCount()) return nullptr;
    return children_[static_cast<std::size_t>(index)].get();
}

int Container::GetControlCount() const {
    return static_cast<int>(children_.size());
}

void Container::ApplyLayout(const host::LayoutControl& layout) {
    Control::ApplyLayout(layout);
    for (const host::LayoutControl& child : layout.children) {
        std::unique_ptr<Control> pChild = MakeLayoutControl(child.kind);
        if (!pChild) continue;
        Control& made = *pChild;
        made.ApplyLayout(child);
        Adopt(std::move(pChild));
        made.Initialize();
    }
}

void Container::Terminate() {
    Control::Terminate();
    for (const auto& pChild : children_) pChild->Terminate();
}

void Container::Adopt(std::unique_ptr<Control> pControl) {
    pControl->pParent_ = this;
    GetNode().AddChild(pControl->GetNode());
    children_.push_back(std::move(pControl));
}

std::unique_ptr<Control> Container::Release(const Control& control) {
    const auto found = std::find_if(children_.begin(), children_.end(),
                                    [&control](const auto& pChild) { return pChild.get() == &control; });
    if (found == children_.end()) return nullptr;
    std::unique_ptr<Control> pReleased = std::move(*found);
    children_.erase(found);
    pReleased->pParent_ = nullptr;
    pReleased->GetNode().RemoveFromParent();
    return pReleased;
}

}  // namespace Ui
}  // namespace Tizen
