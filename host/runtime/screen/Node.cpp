#include "runtime/screen/Node.h"

#include <algorithm>
#include <utility>

#include "runtime/screen/Screen.h"

namespace host {

Node::Node(Screen& screen) : screen_(screen), token_(this, [](Node*) {}) {}

Node::~Node() {
    // Whatever still points here must find nothing.
    token_.reset();
    screen_.OnNodeGone(*this);
    RemoveFromParent();
    for (Node* child : children_) child->parent_ = nullptr;
}

void Node::AddChild(Node& child) {
    child.RemoveFromParent();
    child.parent_ = this;
    children_.push_back(&child);
    child.RequestRedraw(Extent::kTree);
    screen_.OnNodeDamaged(child);
}

void Node::RemoveFromParent() {
    if (parent_ == nullptr) return;
    screen_.OnNodeDamaged(*this);
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
    screen_.OnNodeDamaged(*this);
    bounds_ = bounds;
    screen_.OnNodeDamaged(*this);
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

SizeF Node::Size() const {
    return {static_cast<double>(bounds_.width), static_cast<double>(bounds_.height)};
}

void Node::SetVisible(bool isVisible) {
    if (isVisible == isVisible_) return;
    isVisible_ = isVisible;
    screen_.OnNodeDamaged(*this);
    screen_.OnNodeVisibility(*this);
}

bool Node::IsVisibleInTree() const {
    for (const Node* node = this; node != nullptr; node = node->parent_) {
        if (!node->isVisible_) return false;
    }
    return true;
}

void Node::RequestRedraw(Extent extent) {
    isMarked_ = true;
    screen_.OnNodeMarked();
    if (extent == Extent::kNode) return;
    for (Node* child : children_) child->RequestRedraw(extent);
}

void Node::Draw(DrawOperation operation) {
    if (recording_ != nullptr) {
        recording_->Add(std::move(operation));
        return;
    }
    const SizeF size = Size();
    if (shown_.Size().width != size.width || shown_.Size().height != size.height) shown_ = DrawList(size);
    shown_.Add(std::move(operation));
    isChanged_ = true;
    screen_.OnNodeMarked();
}

void Node::OnFinger(const FingerEvent& event) {
    if (delegate_ == nullptr) return;
    FingerEvent told = event;
    if (told.phase == FingerEvent::Phase::kCancel) told.phase = FingerEvent::Phase::kRelease;
    delegate_->OnFinger(told);
}

void Node::OnBackKey(BackKeyPhase phase) {
    if (delegate_ != nullptr) delegate_->OnBackKey(phase);
}

}  // namespace host
