#pragma once

#include <algorithm>
#include <memory>
#include <vector>

namespace Tizen {
namespace Ui {

/// The listeners of a control, none of them owned; each is told once, in the order of adding. While they are told,
/// listeners may come, and even destroy the control. UI thread only.
template <typename Listener>
class ListenerList {
public:
    void Add(Listener& listener) {
        if (!Contains(listener)) listeners_.push_back(&listener);
    }
    bool IsEmpty() const { return listeners_.empty(); }

    /// Calls `tell` with every listener. `control` is a token that expires when the control, and this list, is
    /// destroyed.
    template <typename Tell>
    void TellAll(const std::weak_ptr<const void>& control, Tell tell) const {
        const auto listeners = listeners_;
        for (Listener* pListener : listeners) {
            if (control.expired()) return;
            tell(*pListener);
        }
    }

private:
    bool Contains(const Listener& listener) const {
        return std::find(listeners_.begin(), listeners_.end(), &listener) != listeners_.end();
    }

    std::vector<Listener*> listeners_;
};

}  // namespace Ui
}  // namespace Tizen
