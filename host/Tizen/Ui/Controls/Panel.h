#pragma once

#include "Tizen/Ui/Container.h"

namespace Tizen {
namespace Ui {
namespace Controls {

/// A container with a look of its own.
class Panel : public Container {
public:
    Panel();
    ~Panel() override;

private:
    void ApplyLayout(const host::LayoutControl& layout) override;
};

}  // namespace Controls
}  // namespace Ui
}  // namespace Tizen
