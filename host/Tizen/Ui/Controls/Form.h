#pragma once

#include <optional>

#include "Tizen/Graphics/Color.h"
#include "Tizen/Graphics/Rectangle.h"
#include "Tizen/Ui/Container.h"

namespace Tizen {
namespace Ui {
namespace Controls {

class IFormBackEventListener;

/// A screenful of controls, built from a layout of the package and shown by a frame while it is the current one.
class Form : public Container {
public:
    Form();
    ~Form() override;

    /// Builds the form from layouts/`layoutName`.xml. E_FILE_NOT_FOUND, and an empty form, when there is no such form.
    result Construct(const Tizen::Base::String& layoutName);

    /// The part that the application draws on, in the form's own coordinates: what the layout says, otherwise all of
    /// it, for this phone has no bars.
    Tizen::Graphics::Rectangle GetClientAreaBounds() const;
    result SetBackgroundColor(const Tizen::Graphics::Color& color);
    /// Null takes it away again.
    void SetFormBackEventListener(IFormBackEventListener* pListener);

private:
    void ApplyLayout(const host::LayoutControl& layout) override;
    void OnBackReleased() override;

    IFormBackEventListener* pBackListener_ = nullptr;
    std::optional<Tizen::Graphics::Rectangle> clientArea_;
};

}  // namespace Controls
}  // namespace Ui
}  // namespace Tizen
