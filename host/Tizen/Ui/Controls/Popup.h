#pragma once

#include "Tizen/Ui/Container.h"

namespace Tizen {
namespace Ui {
namespace Controls {

/// A box over the current form, built from a layout of the package. While it is shown it alone gets touches and keys,
/// and what is under it is dimmed. It belongs to whoever made it and is destroyed with Destroy().
class Popup : public Container {
public:
    Popup();
    ~Popup() override;

    /// Builds the popup from layouts/`layoutName`.xml and runs its OnInitializing. E_FILE_NOT_FOUND, and an empty popup
    /// that is initialised by Show, when there is no such popup.
    result Construct(const Tizen::Base::String& layoutName);
    /// Puts the popup on top of everything. OnInitializing has run when this returns.
    result Show();

private:
    void ApplyLayout(const host::LayoutControl& layout) override;

    bool wasShown_ = false;
};

}  // namespace Controls
}  // namespace Ui
}  // namespace Tizen
