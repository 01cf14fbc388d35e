// The phone's keys, the keys that play, and the focus ring.

#include <gtest/gtest.h>

#include <tuple>

#include "runtime/screen/controls/ButtonNode.h"
#include "runtime/screen/controls/SwitchNode.h"
#include "screen/ScreenRig.h"

using Log = std::vector<std::string>;

namespace {

constexpr const char* kKeys = R"(<keys>
  <key code="KeyF" touch="IDC_PANEL" at="0.25,0.75"/>
  <key code="KeyJ" touch="IDC_PANEL" at="1,1"/>
  <key code="Space" breath="0.8"/>
  <key code="Enter" breath="0.5"/>
  <key code="Escape" phone="back"/>
  <key code="PageUp" phone="volume-up"/>
</keys>)";

// A form with a panel that keys play on, a sign and three controls to be focused.
struct Keys : ScreenRig {
    Keys() : ScreenRig({400, 800}, kKeys) {
        form = &ShowForm();
        Add("IDC_PANEL", {0, 100, 100, 100}, form).SetMultipoint(true);
        first = &AddButton("first", {10, 10, 20, 20}, form);
        Add<host::ButtonNode>("sign", {70, 10, 20, 20}, form);
        auto& second = Add<host::SwitchNode>("second", {40, 10, 20, 20}, form);
        second.SetActing(true);
        AddButton("third", {10, 40, 20, 20}, form);
        Compose();
    }

    host::ButtonNode& AddButton(const std::string& name, const host::PixelRect& bounds, host::Node* parent) {
        auto& button = Add<host::ButtonNode>(name, bounds, parent);
        button.SetActing(true);
        return button;
    }
    /// The name of the control around which the ring is seen, or "none".
    std::string Ringed() {
        Compose();
        for (const auto& [name, x, y] :
             {std::tuple{"first", 20, 7}, {"second", 50, 11}, {"third", 20, 37}, {"inner", 65, 57}}) {
            if (Pixel(4 * x, 4 * y) == host::Rgba{255, 255, 255, 255}) return name;
        }
        return "none";
    }

    host::BoxNode* form;
    host::ButtonNode* first;
};

}  // namespace

TEST(BackKey, GoesToTheTopmostScreenAndItsReleaseToTheOneThatIsThenTopmost) {
    Keys rig;
    rig.Stroke("Escape");
    EXPECT_EQ((Log{"form back press", "form back release"}), rig.TakeLog());
    rig.ShowPopup("popup", {0, 0, 50, 50});
    rig.screen_.PressPhoneKey(host::PhoneKey::kBack);
    rig.screen_.PressPhoneKey(host::PhoneKey::kBack);
    rig.screen_.LiftPhoneKey(host::PhoneKey::kBack);
    EXPECT_EQ((Log{"popup back press", "popup back release"}), rig.TakeLog());

    rig.Recorder("popup").react_ = [&rig](const std::string&) { rig.Destroy("popup"); };
    rig.Stroke("Escape");
    EXPECT_EQ((Log{"popup back press", "form back release"}), rig.TakeLog());
    rig.Press("Escape");
    rig.ShowForm("other");
    rig.Lift("Escape");
    EXPECT_EQ((Log{"form back press", "other back release"}), rig.TakeLog());
    rig.Press("Escape");
    rig.screen_.OnInputLost();
    rig.Lift("Escape");
    EXPECT_EQ((Log{"other back press"}), rig.TakeLog()) << "a Back that the system takes away does not act";
    rig.screen_.LiftPhoneKey(host::PhoneKey::kBack);
    EXPECT_EQ((Log{"other back release"}), rig.TakeLog()) << "a performance may leave the press out";
}

TEST(PlayingKeys, HoldFingersBreathAndVolumeWhileTheyAreDown) {
    Keys rig;
    rig.Press("KeyF");
    rig.screen_.OnKey({"KeyF", host::KeyPhase::kRepeat, host::ShiftKey::kReleased});
    rig.Press("KeyJ");
    rig.Press("Space");
    rig.Press("Enter");
    rig.Lift("Space");
    rig.Lift("Enter");
    rig.Lift("KeyF");
    rig.Stroke("PageUp");
    rig.Stroke("KeyQ");
    EXPECT_EQ((Log{"IDC_PANEL press 0 25,75", "IDC_PANEL press 1 99,99", "breath 0.8", "breath 0.5", "breath 0.0",
                   "IDC_PANEL release 0 25,75", "volume 1"}),
              rig.TakeLog());
    rig.Press("Space");
    rig.TakeLog();
    rig.screen_.OnInputLost();
    EXPECT_EQ((Log{"IDC_PANEL release 1 99,99", "breath 0.0"}), rig.TakeLog());
    rig.Lift("KeyJ");
    EXPECT_TRUE(rig.TakeLog().empty());

    rig.ShowPopup("popup", {0, 0, 50, 50});
    rig.Stroke("KeyF");
    EXPECT_TRUE(rig.TakeLog().empty()) << "the panel is not on the topmost screen";
}

TEST(FocusRing, GoesFromControlToControlInTheDocumentsOrder) {
    Keys rig;
    EXPECT_EQ("none", rig.Ringed());
    const auto after = [&rig](std::string_view code, host::ShiftKey shift = host::ShiftKey::kReleased) {
        rig.Stroke(code, shift);
        return rig.Ringed();
    };
    EXPECT_EQ("first", after("Tab"));
    EXPECT_EQ("second", after("Tab")) << "a button without a listener is passed over";
    EXPECT_EQ("third", after("Tab"));
    EXPECT_EQ("first", after("Tab"));
    EXPECT_EQ("third", after("Tab", host::ShiftKey::kHeld));
    EXPECT_EQ("none", after("KeyF")) << "a key that plays takes it away";
    EXPECT_EQ("third", after("Tab")) << "and it comes back where it was";
    rig.Tap(200, 500);
    EXPECT_EQ("none", rig.Ringed());
    rig.Stroke("Tab");
    rig.form->FindVisible("third")->SetVisible(false);
    EXPECT_EQ("none", rig.Ringed());
    EXPECT_EQ("first", after("Tab"));

    auto& popup = rig.ShowPopup("popup", {50, 50, 50, 50});
    rig.AddButton("inner", {10, 10, 10, 10}, &popup);
    EXPECT_EQ("inner", after("Tab"));
    EXPECT_EQ("inner", after("Tab")) << "the ring stays within the topmost screen";
    rig.Destroy("inner");
    rig.Destroy("popup");
    EXPECT_EQ("first", rig.Ringed());
}

TEST(FocusRing, HasTheShapeOfWhatItGoesAround) {
    constexpr host::Rgba kLight{255, 255, 255, 255};
    Keys rig;
    host::BoxLook round;
    round.corner = 10;
    rig.first->SetLook(round, std::nullopt);
    rig.Stroke("Tab");
    rig.Compose();
    EXPECT_EQ(kLight, rig.Pixel(4 * 20, 4 * 7));
    EXPECT_NE(kLight, rig.Pixel(4 * 7, 4 * 7)) << "a round button's ring is round";
    rig.Stroke("Tab");
    rig.Compose();
    EXPECT_EQ(kLight, rig.Pixel(4 * 50, 4 * 11)) << "the switch's goes around its track";
    EXPECT_NE(kLight, rig.Pixel(4 * 50, 4 * 7));
}

TEST(FocusRing, MakesEnterAndSpacePressTheFocusedControl) {
    Keys rig;
    rig.Stroke("Tab");
    const auto strokePresses = [&rig](const char* code, const char* name) {
        rig.Press(code);
        EXPECT_TRUE(rig.TakeLog().empty()) << code << " acts when it is lifted, and does not blow";
        rig.screen_.OnKey({code, host::KeyPhase::kRepeat, host::ShiftKey::kReleased});
        rig.Lift(code);
        EXPECT_EQ((Log{std::string(name) + " action"}), rig.TakeLog()) << code;
    };
    for (const char* code : {"Enter", "NumpadEnter"}) strokePresses(code, "first");
    const Log blown{"breath 0.8", "breath 0.0"};
    rig.Stroke("Space");
    EXPECT_EQ(blown, rig.TakeLog()) << "where keys play, Space blows whatever has the focus";
    auto& popup = rig.ShowPopup("popup", {50, 50, 50, 50});
    rig.AddButton("inner", {10, 10, 10, 10}, &popup);
    rig.Stroke("Tab");
    for (const char* code : {"Enter", "Space"}) strokePresses(code, "inner");
    rig.Destroy("inner");
    rig.Destroy("popup");
    EXPECT_EQ("first", rig.Ringed());
    rig.Stroke("Enter");
    EXPECT_EQ((Log{"breath 0.5", "breath 0.0"}), rig.TakeLog()) << "a ring that came back by itself takes no key";
    rig.Stroke("Tab");
    rig.Stroke("Tab", host::ShiftKey::kHeld);
    const std::function<void()> interruptions[] = {[&] { rig.screen_.OnInputLost(); },
                                                   [&] {
                                                       rig.ShowPopup("popup", {0, 0, 9, 9});
                                                   },
                                                   [&] { rig.first->SetVisible(false); }};
    for (const auto& interrupt : interruptions) {
        rig.Stroke("Tab");
        rig.Stroke("Tab", host::ShiftKey::kHeld);
        rig.Press("Enter");
        interrupt();
        rig.Lift("Enter");
        EXPECT_TRUE(rig.TakeLog().empty());
        rig.Destroy("popup");
    }
    rig.first->SetVisible(true);
    rig.Recorder("first").react_ = [&rig](const std::string&) { rig.Destroy("first"); };
    rig.Tap(200, 500);
    rig.TakeLog();
    rig.Stroke("Tab");
    rig.Stroke("Enter");
    EXPECT_EQ((Log{"first action"}), rig.TakeLog()) << "which may be its end";
    EXPECT_EQ("none", rig.Ringed());
}
