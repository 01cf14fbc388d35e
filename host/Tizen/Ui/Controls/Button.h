#pragma once

#include "Tizen/Graphics/Bitmap.h"
#include "Tizen/Graphics/Color.h"
#include "Tizen/Ui/Control.h"
#include "Tizen/Ui/Controls/ButtonStatus.h"
#include "Tizen/Ui/ListenerList.h"

namespace Tizen {
namespace Ui {

class IActionEventListener;

namespace Controls {

/// A button with a text, a colour and pictures for each of its states. It acts when a finger is lifted on it. Without
/// an action listener it is a mere sign and takes no keyboard focus.
class Button : public Control {
public:
    Button();
    ~Button() override;

    result SetText(const Tizen::Base::String& text);
    /// Where it stands out too little from the button's colour, the text gets an edge in black or white.
    result SetTextColor(const Tizen::Graphics::Color& color);
    /// E_INVALID_ARG for an unknown status.
    result SetColor(ButtonStatus status, const Tizen::Graphics::Color& color);
    /// Pictures fill the button's bounds. The button keeps its own copy; without a pressed one the normal one shows.
    result SetNormalBackgroundBitmap(const Tizen::Graphics::Bitmap& bitmap);
    result SetPressedBackgroundBitmap(const Tizen::Graphics::Bitmap& bitmap);

    void SetActionId(int actionId);
    void AddActionEventListener(IActionEventListener& listener);

private:
    void ApplyLayout(const host::LayoutControl& layout) override;
    void OnAction() override;

    ListenerList<IActionEventListener> listeners_;
    int actionId_ = -1;
};

}  // namespace Controls
}  // namespace Ui
}  // namespace Tizen
