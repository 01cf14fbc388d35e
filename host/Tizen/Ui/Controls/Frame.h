#pragma once

#include "Tizen/Ui/Container.h"
#include "Tizen/Ui/Controls/Form.h"

namespace Tizen {
namespace App {
class UiApp;
}

namespace Ui {
namespace Controls {

/// Holds the application's forms and shows one of them, the current one.
class Frame : public Container {
public:
    Frame();
    ~Frame() override;

    result Construct();

    /// Takes a form over; it is not shown before it becomes the current one. E_INVALID_ARG for what is no form.
    result AddControl(const Control& control) override;
    /// Destroys the form. If it was the current one, the form that came before it becomes current.
    result RemoveControl(const Control& control) override;

    /// E_OBJ_NOT_FOUND for a form that is not in this frame.
    result SetCurrentForm(const Form& form);
    /// Null while the frame holds no form.
    Form* GetCurrentForm() const { return pCurrentForm_; }

protected:
    void OnChildDeleted(const Control& child) override;
    void Terminate() override;

private:
    friend class Tizen::App::UiApp;

    /// The application has taken the frame over: runs its OnInitializing.
    result EnterApplication();

    void ShowLastForm();

    Form* pCurrentForm_ = nullptr;
};

}  // namespace Controls
}  // namespace Ui
}  // namespace Tizen
