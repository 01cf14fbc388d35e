#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <optional>
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

    /// Where on the phone's screen a fraction (0..1) of the named visible control of the topmost screen lies.
    [[nodiscard]] std::optional<PointF> PointOn(std::string_view name, PointF fraction) const {
        Node* topmost = Topmost();
        const Node* node = topmost == nullptr ? nullptr : topmost->FindVisible(name);
        if (node == nullptr) return std::nullopt;
        // The far edge belongs to the neighbour, so the last point is half a pixel before it.
        constexpr double kBeforeEdge = 0.5;
        const PixelRect place = node->ScreenBounds();
        const auto along = [](double part, int length) {
            return std::clamp(part * length, 0.0, std::max(0.0, length - kBeforeEdge));
        };
        return PointF{place.x + along(fraction.x, place.width), place.y + along(fraction.y, place.height)};
    }

private:
    Node* form_ = nullptr;
    Node* overlay_ = nullptr;
    std::vector<Node*> popups_;
};

}  // namespace host
