#include "runtime/screen/input/Fingers.h"

#include <algorithm>

namespace host {

namespace {

// The deepest visible node at `place`, which counts from the top left of the node's parent.
Node* Find(Node& node, PointF place) {
    if (!node.IsVisible() || !node.Bounds().Contains(place)) return nullptr;
    const PointF inside{place.x - node.Bounds().x, place.y - node.Bounds().y};
    for (auto child = node.Children().rbegin(); child != node.Children().rend(); ++child) {
        if (Node* found = Find(**child, inside)) return found;
    }
    return node.TakesTouches() ? &node : nullptr;
}

}  // namespace

bool Fingers::Press(FingerId id, PointF place) {
    if (fingers_.count(id) != 0) {
        Move(id, place);
        return true;
    }
    Node* node = NodeAt(place);
    if (node == nullptr) return false;
    Finger finger;
    finger.node = node;
    finger.pointId = FreePointId();
    finger.place = place;
    finger.isReported =
        node->IsMultipoint() ||
        std::none_of(fingers_.begin(), fingers_.end(), [node](const auto& other) { return other.second.node == node; });
    fingers_.emplace(id, finger);
    Tell(finger, FingerEvent::Phase::kPress);
    return true;
}

void Fingers::Move(FingerId id, PointF place) {
    const auto found = fingers_.find(id);
    if (found == fingers_.end()) return;
    found->second.place = place;
    // A copy, for what is told may take the finger away.
    const Finger finger = found->second;
    Tell(finger, FingerEvent::Phase::kMove);
}

void Fingers::Lift(FingerId id, PointF place) {
    const auto found = fingers_.find(id);
    if (found == fingers_.end()) return;
    found->second.place = place;
    End(found, FingerEvent::Phase::kRelease);
}

void Fingers::Lift(FingerId id) {
    const auto found = fingers_.find(id);
    if (found != fingers_.end()) End(found, FingerEvent::Phase::kRelease);
}

void Fingers::Cancel(FingerId id) {
    const auto found = fingers_.find(id);
    if (found != fingers_.end()) End(found, FingerEvent::Phase::kCancel);
}

void Fingers::CancelAll() {
    CancelIf([](const Node&) { return true; });
}

void Fingers::CancelWithin(const Node& tree) {
    CancelIf([&tree](const Node& node) { return node.IsWithin(tree); });
}

void Fingers::CancelOutside(const Node* tree) {
    CancelIf([tree](const Node& node) { return tree == nullptr || !node.IsWithin(*tree); });
}

void Fingers::Forget(const Node& node) {
    for (auto finger = fingers_.begin(); finger != fingers_.end();) {
        finger = finger->second.node == &node ? fingers_.erase(finger) : std::next(finger);
    }
}

const Node* Fingers::NodeOf(FingerId id) const {
    const auto found = fingers_.find(id);
    return found == fingers_.end() ? nullptr : found->second.node;
}

Node* Fingers::NodeAt(PointF place) const {
    Node* topmost = stack_.Topmost();
    return topmost == nullptr ? nullptr : Find(*topmost, place);
}

unsigned long Fingers::FreePointId() const {
    unsigned long pointId = 0;
    const auto isTaken = [this, &pointId] {
        return std::any_of(fingers_.begin(), fingers_.end(),
                           [pointId](const auto& finger) { return finger.second.pointId == pointId; });
    };
    while (isTaken()) ++pointId;
    return pointId;
}

void Fingers::End(std::map<FingerId, Finger>::iterator finger, FingerEvent::Phase phase) {
    const Finger ended = finger->second;
    fingers_.erase(finger);
    Tell(ended, phase);
}

template <typename Predicate>
void Fingers::CancelIf(Predicate predicate) {
    // What is told may take further fingers away, so every search begins anew.
    for (;;) {
        const auto found = std::find_if(fingers_.begin(), fingers_.end(),
                                        [&predicate](const auto& finger) { return predicate(*finger.second.node); });
        if (found == fingers_.end()) return;
        End(found, FingerEvent::Phase::kCancel);
    }
}

void Fingers::Tell(const Finger& finger, FingerEvent::Phase phase) {
    if (!finger.isReported) return;
    const PixelRect place = finger.node->ScreenBounds();
    finger.node->OnFinger({phase, finger.pointId, {finger.place.x - place.x, finger.place.y - place.y}});
}

}  // namespace host
