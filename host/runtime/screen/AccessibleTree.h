#pragma once

#include <cstdint>

#include "backend/Accessible.h"
#include "runtime/screen/Node.h"
#include "runtime/screen/Screen.h"

namespace host {

/// The screen in words, made from the tree of its nodes each time that somebody asks. UI thread only.
class AccessibleTree final : public Accessible {
public:
    /// The screen outlives it.
    explicit AccessibleTree(Screen& screen) : screen_(screen) {}

    [[nodiscard]] AccessibleScreen DescribeScreen() const override;
    /// As a finger that taps the middle of the thing, so that everything happens that a tap makes happen.
    bool Activate(std::uint64_t id) override;
    bool SetValue(std::uint64_t id, int value) override;

private:
    void Describe(const Node& node, AccessibleScreen& screen) const;
    /// The visible node of the topmost screen that has this thing; null when there is none.
    [[nodiscard]] Node* Find(std::uint64_t id) const;

    Screen& screen_;
};

}  // namespace host
