#pragma once

#include "Tizen/App/App.h"
#include "Tizen/Base/Collection/IList.h"
#include "Tizen/Ui/Controls/Frame.h"

namespace Tizen {
namespace App {

class UiApp;
typedef UiApp* (*UiAppInstanceFactory)();

/// An application with one frame of forms. UI thread only.
class UiApp : public App {
public:
    UiApp();
    ~UiApp() override;

    /// The running application, or null.
    static UiApp* GetInstance();

    /// Makes the application, runs it until it ends and destroys it. The launcher has opened the phone around it
    /// before. E_INVALID_ARG without a factory, E_FAILURE when it gives no application or that one refuses to start.
    static result Execute(UiAppInstanceFactory pFactory, const Tizen::Base::Collection::IList* pArguments);

    /// Takes the frame over and runs its OnInitializing. There is one frame: E_OBJ_ALREADY_EXIST for another.
    result AddFrame(const Tizen::Ui::Controls::Frame& frame);
    /// Null until a frame was added.
    Tizen::Ui::Controls::Frame* GetAppFrame() const { return pFrame_; }

    virtual void OnForeground();
    virtual void OnBackground();

private:
    class Runner;

    void DestroyFrame();

    Tizen::Ui::Controls::Frame* pFrame_ = nullptr;
};

}  // namespace App
}  // namespace Tizen
