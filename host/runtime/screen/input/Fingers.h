#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "backend/Geometry.h"
#include "runtime/screen/Node.h"
#include "runtime/screen/ScreenStack.h"

namespace host {

/// Who put a finger down; each source numbers its own.
enum class FingerSource { kWindow, kPerformance, kKeyboard, kAccessibility };
struct FingerId {
    FingerSource source = FingerSource::kWindow;
    std::int64_t number = 0;

    friend bool operator<(const FingerId& left, const FingerId& right) {
        return std::pair(left.source, left.number) < std::pair(right.source, right.number);
    }
};

/// The fingers that are down, each with the node that it was put down on and that has it until it lifts. Places are in
/// the phone's pixels. UI thread only.
class Fingers {
public:
    explicit Fingers(const ScreenStack& stack) : stack_(stack) {}

    /// Of a finger that is down already it is a move. False when there is nothing to touch at that place.
    bool Press(FingerId id, PointF place);
    void Move(FingerId id, PointF place);
    void Lift(FingerId id, PointF place);
    /// Lifts a finger where it last was.
    void Lift(FingerId id);
    /// Takes a finger away, so that nothing acts on it.
    void Cancel(FingerId id);
    void CancelAll();
    /// Those of nodes within `tree`.
    void CancelWithin(const Node& tree);
    /// Those of nodes that are not within `tree`; all when it is null.
    void CancelOutside(const Node* tree);
    /// Forgets the fingers of a node that is going.
    void Forget(const Node& node);

    /// What a finger would be put down on there; null for nothing.
    [[nodiscard]] Node* NodeAt(PointF place) const;
    /// The node that captured the finger; null when it is not down.
    [[nodiscard]] const Node* NodeOf(FingerId id) const;

private:
    struct Finger {
        Node* node = nullptr;
        unsigned long pointId = 0;
        bool isReported = false;
        PointF place;
    };

    [[nodiscard]] unsigned long FreePointId() const;
    void End(std::map<FingerId, Finger>::iterator finger, FingerEvent::Phase phase);
    template <typename Predicate>
    void CancelIf(Predicate predicate);
    static void Tell(const Finger& finger, FingerEvent::Phase phase);

    const ScreenStack& stack_;
    std::map<FingerId, Finger> fingers_;
};

}  // namespace host
