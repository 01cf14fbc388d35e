#pragma once

#include <memory>
#include <vector>

#include "Tizen/Ui/Control.h"

namespace Tizen {
namespace Ui {

/// A control that holds others and owns them: they are destroyed with it. Later ones lie on top of earlier ones.
class Container : public Control {
public:
    Container();
    ~Container() override;

    /// An empty container without bounds or look.
    result Construct();

    /// Takes the control over and runs its OnInitializing. E_INVALID_ARG for one that already has a parent.
    virtual result AddControl(const Control& control);
    /// Destroys the control. E_OBJ_NOT_FOUND for one that is not in this container.
    virtual result RemoveControl(const Control& control);

    /// The control of that name among the direct children, with `recursive` in the whole tree below; null when there is
    /// none.
    Control* GetControl(const Tizen::Base::String& name, bool recursive = false) const;
    /// By its place in the order of adding; null outside of 0 .. GetControlCount() - 1.
    Control* GetControl(int index) const;
    int GetControlCount() const;

protected:
    explicit Container(std::unique_ptr<host::Node> pNode);

    void ApplyLayout(const host::LayoutControl& layout) override;
    void Terminate() override;

    /// A child was deleted by somebody else and is no child any more; of it the framework's own part is left.
    virtual void OnChildDeleted(const Control&) {}

    /// Takes a control without a parent over.
    void Adopt(std::unique_ptr<Control> pControl);
    /// Gives up the ownership of a child; null when it is none.
    std::unique_ptr<Control> Release(const Control& control);

private:
    friend class Control;

    std::vector<std::unique_ptr<Control>> children_;
};

}  // namespace Ui
}  // namespace Tizen
