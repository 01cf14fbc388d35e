#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <vector>

#include "runtime/screen/Node.h"

namespace host {

/// Which screens lie over one another: the current form, and the popups over it. UI thread only.
class ScreenStack {
public:
    /// Lies over everything that is under a popup.
    static constexpr Rgba kDimming{0, 0, 0, 128};

    void SetForm(Node* form) { form_ = form; }
    [[nodiscard]] Node* Form() const { return form_; }

    void Push(Node& popup) {
        Forget(popup);
        popups_.push_back(&popup);
    }
    /// False when it is none of them.
    bool Forget(const Node& node) {
        if (form_ == &node) {
            form_ = nullptr;
            return true;
        }
        const auto found = std::find(popups_.begin(), popups_.end(), &node);
        if (found == popups_.end()) return false;
        popups_.erase(found);
        return true;
    }

    /// Lies over everything and gets neither touches nor keys; null for none.
    void SetOverlay(Node* overlay) { overlay_ = overlay; }
    [[nodiscard]] Node* Overlay() const { return overlay_; }

    /// From the lowest up; a hidden popup counts for nothing.
    [[nodiscard]] const std::vector<Node*>& Popups() const { return popups_; }

    /// The one screen that gets touches and keys; null without any.
    [[nodiscard]] Node* Topmost() const {
        for (std::size_t i = popups_.size(); i > 0; --i) {
            if (popups_[i - 1]->IsVisible()) return popups_[i - 1];
        }
        return form_;
    }

    /// The form or popup that is shown and holds the node, or is it; null when there is none.
    [[nodiscard]] const Node* ScreenOf(const Node& node) const {
        for (const Node* place = &node; place != nullptr; place = place->Parent()) {
            if (place == form_ || std::find(popups_.begin(), popups_.end(), place) != popups_.end()) return place;
        }
        return nullptr;
    }

    /// The visible control of that name on the topmost screen; null when there is none.
    [[nodiscard]] Node* FindOnTop(std::string_view name) const {
        Node* topmost = Topmost();
        return topmost == nullptr ? nullptr : topmost->FindVisible(name);
    }

private:
    Node* form_ = nullptr;
    Node* overlay_ = nullptr;
    std::vector<Node*> popups_;
};

}  // namespace host
