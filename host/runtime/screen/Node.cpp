#include "runtime/screen/Node.h"

#include <algorithm>
#include <utility>

namespace host {

namespace {

std::uint64_t lastSerial = 0;

}  // namespace

Node::Node(NodeHost& host)
    : host_(host), lookListener_(host.GetLookListener()), token_(this, [](Node*) {}), serial_(++lastSerial) {}

Node::~Node() {
    // Whatever still points here must find nothing.
    token_.reset();
    host_.OnNodeGone(*this);
    RemoveFromParent();
    for (Node* child : children_) child->parent_ = nullptr;
}

void Node::AddChild(Node& child) {
    child.RemoveFromParent();
    child.parent_ = this;
    children_.push_back(&child);
    child.RequestRedraw(Extent::kTree);
    lookListener_.OnNodeDamaged(child);
}

void Node::RemoveFromParent() {
    if (parent_ == nullptr) return;
    lookListener_.OnNodeDamaged(*this);
    auto& siblings = parent_->children_;
    siblings.erase(std::remove(siblings.begin(), siblings.end(), this), siblings.end());
    parent_ = nullptr;
}

Node& Node::Root() {
    Node* root = this;
    while (root->parent_ != nullptr) root = root->parent_;
    return *root;
}

bool Node::IsWithin(const Node& other) const {
    for (const Node* node = this; node != nullptr; node = node->parent_) {
        if (node == &other) return true;
    }
    return false;
}

Node* Node::FindVisible(std::string_view name) {
    if (!isVisible_) return nullptr;
    if (name_ == name) return this;
    for (Node* child : children_) {
        if (Node* found = child->FindVisible(name)) return found;
    }
    return nullptr;
}

void Node::SetBounds(const PixelRect& bounds) {
    if (bounds == bounds_) return;
    lookListener_.OnNodeDamaged(*this);
    bounds_ = bounds;
    lookListener_.OnNodeDamaged(*this);
    RequestRedraw(Extent::kTree);
}

PixelRect Node::ScreenBounds() const {
    PixelRect place = bounds_;
    for (const Node* node = parent_; node != nullptr; node = node->parent_) {
        place.x += node->bounds_.x;
        place.y += node->bounds_.y;
    }
    return place;
}

PointF Node::ScreenPointAt(PointF fraction) const {
    // The far edge belongs to the neighbour, so the last point is half a pixel before it.
    constexpr double kBeforeEdge = 0.5;
    const PixelRect place = ScreenBounds();
    const auto along = [](double part, int length) {
        return std::clamp(part * length, 0.0, std::max(0.0, length - kBeforeEdge));
    };
    return {place.x + along(fraction.x, place.width), place.y + along(fraction.y, place.height)};
}

SizeF Node::Size() const {
    return {static_cast<double>(bounds_.width), static_cast<double>(bounds_.height)};
}

void Node::SetVisible(bool isVisible) {
    if (isVisible == isVisible_) return;
    isVisible_ = isVisible;
    lookListener_.OnNodeDamaged(*this);
    host_.OnNodeShownOrHidden(*this);
}

bool Node::IsVisibleInTree() const {
    for (const Node* node = this; node != nullptr; node = node->parent_) {
        if (!node->isVisible_) return false;
    }
    return true;
}

void Node::RequestRedraw(Extent extent) {
    lookListener_.OnNodeMarked(*this);
    if (extent == Extent::kNode) return;
    for (Node* child : children_) child->RequestRedraw(extent);
}

void Node::Draw(DrawOperation operation) {
    lookListener_.OnNodeDrawn(*this, std::move(operation));
}

void Node::OnFinger(const FingerEvent& event) {
    if (delegate_ != nullptr) delegate_->OnFinger(event);
}

void Node::OnBackKey(BackKeyPhase phase) {
    if (delegate_ != nullptr) delegate_->OnBackKey(phase);
}

}  // namespace host
