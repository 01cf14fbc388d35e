#include "backend/web/WebAccessibility.h"

#include <utility>

#include "backend/web/Bridge.h"

namespace host {

void WebAccessibility::Update() {
    if (source_ == nullptr) return;
    AccessibleScreen screen = source_->DescribeScreen();
    if (screen == told_) return;
    told_ = std::move(screen);
    web_accessible_begin(told_.kind == AccessibleKind::kDialog ? 1 : 0, told_.isPlayedOn ? 1 : 0);
    for (const AccessibleItem& item : told_.items) {
        web_accessible_item(static_cast<double>(item.id), static_cast<int>(item.role), item.name.c_str(), item.bounds.x,
                            item.bounds.y, item.bounds.width, item.bounds.height, item.isOn ? 1 : 0, item.value,
                            item.least, item.most);
    }
    web_accessible_end();
}

void WebAccessibility::Activate(std::uint64_t id) {
    if (source_ != nullptr) static_cast<void>(source_->Activate(id));
}

void WebAccessibility::SetValue(std::uint64_t id, int value) {
    if (source_ != nullptr) static_cast<void>(source_->SetValue(id, value));
}

}  // namespace host
