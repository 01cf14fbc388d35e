// The framework's controls on a phone of their own: what the host promises to the application's forms and popups.

#include <gtest/gtest.h>

#include <memory>
#include <utility>

#include "Tizen/Base/Collection/ArrayList.h"
#include "Tizen/Base/Collection/SingleObjectDeleter.h"
#include "Tizen/Ui/Controls/Button.h"
#include "Tizen/Ui/Controls/CheckButton.h"
#include "Tizen/Ui/Controls/ColorPicker.h"
#include "Tizen/Ui/Controls/Form.h"
#include "Tizen/Ui/Controls/Frame.h"
#include "Tizen/Ui/Controls/IFormBackEventListener.h"
#include "Tizen/Ui/Controls/Label.h"
#include "Tizen/Ui/Controls/Popup.h"
#include "Tizen/Ui/IActionEventListener.h"
#include "Tizen/Ui/IKeyEventListener.h"
#include "Tizen/Ui/KeyCode.h"
#include "runtime/screen/Screen.h"
#include "runtime/screen/controls/Contrast.h"
#include "support/TestPhone.h"
#include "support/TraceLines.h"

using namespace Tizen::Ui;
using namespace Tizen::Ui::Controls;
using Tizen::Base::Collection::IList;
using Tizen::Graphics::Canvas;
using Tizen::Graphics::Color;
using Tizen::Graphics::Rectangle;
using Log = std::vector<std::string>;

namespace {

Log calls;

// Writes down what the framework calls, as "what name".
template <typename Base>
class Recorded : public Base, public IActionEventListener, public IKeyEventListener {
public:
    ~Recorded() override { calls.push_back("destroyed " + name_); }
    result OnInitializing() override { return Write("initializing"); }
    result OnTerminating() override { return Write("terminating"); }
    void OnUserEventReceivedN(long requestId, IList* pArgs) override {
        Write("event " + std::to_string(requestId));
        Base::OnUserEventReceivedN(requestId, pArgs);
    }
    void OnActionPerformed(const Control&, int actionId) override { Write("action " + std::to_string(actionId)); }
    void OnKeyPressed(const Control&, int keyCode) override { Write("pressed " + std::to_string(keyCode)); }
    void OnKeyReleased(const Control&, int keyCode) override { Write("released " + std::to_string(keyCode)); }
    void OnKeyLongPressed(const Control&, int) override { Write("long"); }

private:
    result Write(const std::string& what) {
        name_ = this->GetName().ToUtf8();
        calls.push_back(what + ' ' + name_);
        return E_SUCCESS;
    }
    std::string name_;
};

template <typename Base>
Recorded<Base>* Made(const char* pName) {
    auto* pMade = new Recorded<Base>;
    pMade->SetName(pName);
    return pMade;
}

struct Phone {
    Phone() : pPhone(std::make_unique<TestPhone>(Options(trace))), phone(*pPhone) { calls.clear(); }
    static host::Options Options(const TemporaryFolder& folder) {
        host::Options options;
        options.trace = folder / "trace";
        return options;
    }
    host::EventLoop& Loop() { return phone.GetRuntime().GetLoop(); }
    /// Ends the phone, which closes the trace: "event name" or "event id" of every line of that kind.
    Log Trace(const std::string& what) {
        pPhone.reset();
        Log lines;
        for (const auto& line : ReadTraceLines(trace.Read("trace"))) {
            if (line["what"] != what) continue;
            const auto subject = line.contains("name") ? line["name"].get<std::string>() : line["id"].dump();
            lines.push_back(line["event"].get<std::string>() + ' ' + subject);
        }
        return lines;
    }

    TemporaryFolder trace;
    std::unique_ptr<TestPhone> pPhone;
    TestPhone& phone;
};

}  // namespace

TEST(Forms, ComeGoAndGetTheBackKeyAsTheFrameSays) {
    Phone rig;
    auto* pFrame = new Frame;
    auto* pFirst = Made<Form>("first");
    auto* pSecond = Made<Form>("second");
    EXPECT_EQ(E_SUCCESS, pFrame->AddControl(*pFirst));
    EXPECT_EQ(E_INVALID_ARG, pFrame->AddControl(*pFirst));
    EXPECT_EQ(E_OBJ_NOT_FOUND, pFrame->SetCurrentForm(*pSecond));
    EXPECT_EQ(E_SUCCESS, pFrame->SetCurrentForm(*pFirst));
    pFrame->AddControl(*pSecond);
    pFrame->SetCurrentForm(*pSecond);
    EXPECT_EQ(pFrame, pSecond->GetParent());
    pFirst->AddKeyEventListener(*pFirst);
    pSecond->AddKeyEventListener(*pSecond);
    pSecond->AddKeyEventListener(*pSecond);
    host::Screen& screen = rig.phone.GetScreen();
    screen.PressPhoneKey(host::PhoneKey::kBack);
    screen.LiftPhoneKey(host::PhoneKey::kBack);
    EXPECT_EQ((Log{"initializing first", "initializing second", "pressed 157 second", "released 157 second"}),
              std::exchange(calls, {}));

    EXPECT_EQ(E_SUCCESS, pFrame->RemoveControl(*pSecond));
    EXPECT_EQ(pFirst, pFrame->GetCurrentForm());
    EXPECT_EQ(1, pFrame->GetControlCount());
    screen.PressPhoneKey(host::PhoneKey::kBack);
    screen.LiftPhoneKey(host::PhoneKey::kBack);
    EXPECT_EQ((Log{"terminating second", "destroyed second", "pressed 157 first", "released 157 first"}),
              std::exchange(calls, {}));
    pFrame->Destroy();
    EXPECT_EQ((Log{"terminating first", "destroyed first"}), calls);
    EXPECT_EQ((Log{"added first", "current first", "added second", "current second", "removed second", "current first",
                   "removed first"}),
              rig.Trace("form"));
}

TEST(UserEvents, AreDeliveredAfterTheirSenderHasReturnedOrDroppedWithTheReceiver) {
    Phone rig;
    auto* pReceiver = Made<Popup>("receiver");
    auto* pOther = Made<Popup>("other");
    rig.Loop().StartTimer(0, [&] {
        pReceiver->SendUserEvent(7, nullptr);
        pOther->SendUserEvent(8, new Tizen::Base::Collection::ArrayList(Tizen::Base::Collection::SingleObjectDeleter));
        calls.push_back("returned");
        pOther->Destroy();
    });
    const bool isEnding = false;
    rig.Loop().RunDue(rig.Loop().Now(), isEnding);
    EXPECT_EQ((Log{"returned", "event 7 receiver"}), Log({calls[0], calls.back()}));
    pReceiver->Destroy();
    EXPECT_EQ((Log{"sent 7", "sent 8", "delivered 7", "dropped 8"}), rig.Trace("user-event"));
}

TEST(Popups, AreInitializedOnceAndTraced) {
    Phone rig;
    auto* pPopup = Made<Popup>("unset");
    EXPECT_EQ(E_FILE_NOT_FOUND, pPopup->Construct("IDF_FORM")) << "a form is no popup";
    EXPECT_TRUE(calls.empty());
    EXPECT_EQ(E_SUCCESS, pPopup->Construct("IDP_POPUP_COLOR"));
    EXPECT_EQ((Log{"initializing IDP_POPUP_COLOR"}), calls);
    pPopup->SetShowState(true);
    pPopup->Show();
    EXPECT_EQ(1U, calls.size());
    auto* pPicker = dynamic_cast<ColorPicker*>(pPopup->GetControl("IDC_COLORPICKER", true));
    ASSERT_NE(nullptr, pPicker);
    pPicker->SetColor(Color(1, 2, 3, 4));
    EXPECT_EQ(Color(1, 2, 3, 4), pPicker->GetColor());
    EXPECT_EQ(nullptr, pPopup->GetControl("IDC_NONE", true));
    pPopup->Destroy();

    auto* pEmpty = Made<Popup>("empty");
    calls.clear();
    pEmpty->Show();
    EXPECT_EQ((Log{"initializing empty"}), calls) << "at the latest when it is shown";
    pEmpty->Destroy();
    EXPECT_EQ((Log{"shown IDP_POPUP_COLOR", "destroyed IDP_POPUP_COLOR", "shown empty", "destroyed empty"}),
              rig.Trace("popup"));
}

TEST(Layouts, BecomeControlsThatAct) {
    Phone rig;
    auto* pFrame = new Frame;
    auto* pForm = Made<Form>("unset");
    ASSERT_EQ(E_SUCCESS, pForm->Construct("IDF_FORM_SETUP"));
    pFrame->AddControl(*pForm);
    pFrame->SetCurrentForm(*pForm);
    auto* pClose = dynamic_cast<Button*>(pForm->GetControl("IDC_BUTTON_CLOSE", false));
    auto* pCheck = dynamic_cast<CheckButton*>(pForm->GetControl("IDC_CHECK_AUTO_PLAY", false));
    ASSERT_NE(nullptr, pClose);
    ASSERT_NE(nullptr, pCheck);
    pClose->SetActionId(101);
    pClose->AddActionEventListener(*pForm);
    pCheck->SetActionId(102, 103, -1);
    pCheck->AddActionEventListener(*pForm);
    pCheck->SetSelected(true);
    calls.clear();
    const auto tap = [&rig](const char* pName) {
        host::Screen& screen = rig.phone.GetScreen();
        const host::FingerId finger{host::FingerSource::kWindow, 1};
        screen.Touch(finger, host::TouchPhase::kDown, screen.FindOnTop(pName)->ScreenPointAt({1, 1}));
        screen.Touch(finger, host::TouchPhase::kUp, std::nullopt);
    };
    tap("IDC_CHECK_AUTO_PLAY");
    EXPECT_FALSE(pCheck->IsSelected());
    tap("IDC_CHECK_AUTO_PLAY");
    EXPECT_TRUE(pCheck->IsSelected());
    tap("IDC_BUTTON_CLOSE");
    EXPECT_EQ((Log{"action 103 IDF_FORM_SETUP", "action 102 IDF_FORM_SETUP", "action 101 IDF_FORM_SETUP"}), calls);
    pClose->SetShowState(false);
    EXPECT_EQ(nullptr, rig.phone.GetScreen().FindOnTop("IDC_BUTTON_CLOSE"));
    pFrame->Destroy();
    EXPECT_EQ((Log{"action IDC_CHECK_AUTO_PLAY", "action IDC_CHECK_AUTO_PLAY", "action IDC_BUTTON_CLOSE",
                   "hidden IDC_BUTTON_CLOSE"}),
              rig.Trace("control"));
}

TEST(Canvases, AreClippedToTheirControlAndOutliveIt) {
    Phone rig;
    auto* pFrame = new Frame;
    auto* pForm = Made<Form>("form");
    pFrame->AddControl(*pForm);
    pFrame->SetCurrentForm(*pForm);
    pForm->SetBackgroundColor(Color(0, 0, 200));
    auto* pHole = new Container;
    pHole->SetBounds(Rectangle(100, 100, 50, 50));
    pForm->AddControl(*pHole);
    const std::unique_ptr<Canvas> pCanvas(pHole->GetCanvasN());
    EXPECT_EQ(Rectangle(0, 0, 50, 50), pCanvas->GetBounds());
    rig.phone.GetScreen().ComposeIfDue(0);
    EXPECT_EQ(E_SUCCESS, pCanvas->FillRectangle(Color(200, 0, 0), Rectangle(-20, 10, 200, 20)));
    EXPECT_EQ(E_INVALID_ARG, pCanvas->FillEllipse(Color(200, 0, 0), Rectangle(0, 0, 0, 20)));
    EXPECT_EQ(E_INVALID_ARG, pCanvas->SetLineWidth(0));
    const host::Image image = rig.phone.GetScreen().ReadNow();
    const auto pixelAt = [&image](int x, int y) {
        return image.pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(image.size.width) +
                            static_cast<std::size_t>(x)];
    };
    EXPECT_EQ((host::Rgba{200, 0, 0, 255}), pixelAt(100, 115));
    EXPECT_EQ((host::Rgba{0, 0, 200, 255}), pixelAt(99, 115));
    EXPECT_EQ((host::Rgba{0, 0, 200, 255}), pixelAt(150, 115));
    EXPECT_EQ((host::Rgba{0, 0, 200, 255}), pixelAt(120, 131));

    pForm->RemoveControl(*pHole);
    EXPECT_EQ(E_INVALID_STATE, pCanvas->FillRectangle(Color(200, 0, 0), Rectangle(0, 0, 9, 9)));
    EXPECT_TRUE(pCanvas->GetBounds().IsEmpty());
    delete pForm;  // which leaves its frame by itself
    EXPECT_EQ(0, pFrame->GetControlCount());
    EXPECT_EQ(nullptr, pFrame->GetCurrentForm());
    pFrame->Destroy();
}

TEST(Contrast, FollowsTheGuidelinesFormula) {
    EXPECT_NEAR(21, host::ContrastRatio({0, 0, 0, 255}, {255, 255, 255, 255}), 1e-9);
    // The guideline's own well-known border cases: 4.48 and 4.54 on white.
    EXPECT_NEAR(4.48, host::ContrastRatio({0x77, 0x77, 0x77, 255}, {255, 255, 255, 255}), 0.005);
    EXPECT_NEAR(4.54, host::ContrastRatio({255, 255, 255, 255}, {0x76, 0x76, 0x76, 255}), 0.005);
    EXPECT_EQ((host::Rgba{255, 255, 255, 255}), host::BlackOrWhiteAgainst({0, 0, 200, 255}));
    EXPECT_EQ((host::Rgba{0, 0, 0, 255}), host::BlackOrWhiteAgainst({255, 200, 0, 255}));
}
