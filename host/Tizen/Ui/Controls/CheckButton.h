#pragma once

#include "Tizen/Ui/Control.h"
#include "Tizen/Ui/ListenerList.h"

namespace Tizen {
namespace Ui {

class IActionEventListener;

namespace Controls {

/// A switch that is on or off, with a text beside it. It turns when a finger is lifted on it.
class CheckButton : public Control {
public:
    CheckButton();
    ~CheckButton() override;

    result SetText(const Tizen::Base::String& text);

    /// The ids that listeners are told when the user turns the switch on or off. `selectedActionId` is for check
    /// buttons that are merely chosen; a switch never reports it.
    void SetActionId(int checkedActionId, int uncheckedActionId, int selectedActionId);
    void AddActionEventListener(IActionEventListener& listener);

    /// Reports nothing.
    void SetSelected(bool select);
    bool IsSelected() const;

private:
    void ApplyLayout(const host::LayoutControl& layout) override;
    void OnAction() override;

    ListenerList<IActionEventListener> listeners_;
    int checkedActionId_ = -1;
    int uncheckedActionId_ = -1;
};

}  // namespace Controls
}  // namespace Ui
}  // namespace Tizen
