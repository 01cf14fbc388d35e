#include "runtime/screen/AccessibleTree.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

#include "runtime/screen/composing/Compositor.h"
#include "runtime/screen/input/Fingers.h"

namespace host {

namespace {

// Of one node. No node has more parts.
constexpr std::uint64_t kMostParts = 16;

std::uint64_t IdOf(const Node& node, std::size_t part) {
    return node.Serial() * kMostParts + part;
}

Node* FindSerial(Node& node, std::uint64_t serial) {
    if (!node.IsVisible()) return nullptr;
    if (node.Serial() == serial) return &node;
    for (Node* child : node.Children()) {
        if (Node* found = FindSerial(*child, serial)) return found;
    }
    return nullptr;
}

}  // namespace

AccessibleScreen AccessibleTree::DescribeScreen() const {
    AccessibleScreen description;
    const Node* topmost = screen_.Topmost();
    if (topmost == nullptr || !topmost->IsVisible()) return description;
    description.kind = screen_.IsPopup(*topmost) ? AccessibleKind::kDialog : AccessibleKind::kForm;
    description.isPlayedOn = screen_.IsPlayedOn();
    Describe(*topmost, description);
    return description;
}

void AccessibleTree::Describe(const Node& node, AccessibleScreen& screen) const {
    if (!node.IsVisible()) return;
    const PixelRect place = node.ScreenBounds();
    std::vector<AccessiblePart> parts;
    node.DescribeInWords(parts);
    for (std::size_t index = 0; index < std::min<std::size_t>(parts.size(), kMostParts); ++index) {
        AccessiblePart& part = parts[index];
        if (part.name.empty()) continue;
        const PixelRect bounds{place.x + part.bounds.x, place.y + part.bounds.y, part.bounds.width, part.bounds.height};
        screen.items.push_back({IdOf(node, index), part.role, std::move(part.name),
                                screen_.GetCompositor().ToDevice(bounds), part.isOn, part.value, part.least,
                                part.most});
    }
    const std::vector<Node*>& children = node.Children();
    for (auto child = children.begin(); child != children.end(); ++child) {
        // A text that a later node lies over as a whole cannot be read by anybody.
        const bool isCovered =
            !(*child)->IsFocusable() && std::any_of(child + 1, children.end(), [&child](const Node* later) {
                return later->IsVisible() && later->Bounds().Contains((*child)->Bounds());
            });
        if (!isCovered) Describe(**child, screen);
    }
}

Node* AccessibleTree::Find(std::uint64_t id) const {
    Node* topmost = screen_.Topmost();
    return topmost == nullptr ? nullptr : FindSerial(*topmost, id / kMostParts);
}

bool AccessibleTree::Activate(std::uint64_t id) {
    const Node* node = Find(id);
    if (node == nullptr || !node->IsFocusable() || screen_.IsInputSuspended()) return false;
    constexpr FingerId kFinger{FingerSource::kAccessibility, 0};
    constexpr PointF kMiddle{0.5, 0.5};
    screen_.Touch(kFinger, TouchPhase::kDown, node->ScreenPointAt(kMiddle));
    screen_.Touch(kFinger, TouchPhase::kUp, std::nullopt);
    return true;
}

bool AccessibleTree::SetValue(std::uint64_t id, int value) {
    Node* node = Find(id);
    return node != nullptr && !screen_.IsInputSuspended() && node->SetPartValue(id % kMostParts, value);
}

}  // namespace host
