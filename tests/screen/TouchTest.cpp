// Which control gets which finger, and that no finger stays on a control for ever.

#include <gtest/gtest.h>

#include <algorithm>

#include "runtime/screen/controls/ButtonNode.h"
#include "screen/ScreenRig.h"

using host::TouchPhase;
using Log = std::vector<std::string>;

namespace {

// A form with two holes beside each other.
struct Holes : ScreenRig {
    explicit Holes(host::PixelSize window = kPhone) : ScreenRig(window) {
        form = &ShowForm();
        left = &Add("left", {0, 100, 50, 100}, form);
        right = &Add("right", {50, 100, 50, 100}, form);
        left->SetMultipoint(true);
        right->SetMultipoint(true);
    }

    host::BoxNode* form;
    host::BoxNode* left;
    host::BoxNode* right;
};

}  // namespace

TEST(Fingers, BelongToTheControlThatTheyWerePutDownOnUntilTheyLift) {
    Holes rig;
    rig.Touch(TouchPhase::kDown, 10, 110);
    rig.Touch(TouchPhase::kMove, 60, 150);
    rig.Touch(TouchPhase::kDown, 70, 160);  // a repeated press is a move
    rig.Touch(TouchPhase::kUp, 70, -5);
    EXPECT_EQ((Log{"left press 0 10,10", "left move 0 60,50", "left move 0 70,60", "left release 0 70,-105"}),
              rig.TakeLog());
    rig.Touch(TouchPhase::kMove, 10, 110);
    rig.Touch(TouchPhase::kUp, 10, 110);
    EXPECT_TRUE(rig.TakeLog().empty()) << "a finger that is not down says nothing";
}

TEST(Fingers, EachHaveTheirOwnRecord) {
    Holes rig;
    rig.Touch(TouchPhase::kDown, 10, 110, 7);
    rig.Touch(TouchPhase::kDown, 60, 110, 9);
    rig.Touch(TouchPhase::kDown, 20, 120, 8);
    rig.Touch(TouchPhase::kUp, 10, 110, 7);
    rig.Touch(TouchPhase::kDown, 30, 130, 11);
    EXPECT_EQ((Log{"left press 0 10,10", "right press 1 10,10", "left press 2 20,20", "left release 0 10,10",
                   "left press 0 30,30"}),
              rig.TakeLog());

    rig.left->SetMultipoint(false);
    rig.screen_.OnInputLost();
    rig.TakeLog();
    rig.Touch(TouchPhase::kDown, 10, 110, 1);
    rig.Touch(TouchPhase::kDown, 20, 110, 2);
    rig.Touch(TouchPhase::kUp, 10, 110, 1);
    rig.Touch(TouchPhase::kUp, 20, 110, 2);
    EXPECT_EQ((Log{"left press 0 10,10", "left release 0 10,10"}), rig.TakeLog())
        << "without multi-point only the first finger counts";
}

TEST(Fingers, ReachTheDeepestVisibleControlThatTakesThem) {
    Holes rig;
    auto& inner = rig.Add("inner", {10, 10, 20, 20}, rig.left);
    auto& decoration = rig.Add("decoration", {0, 100, 100, 100}, rig.form);
    decoration.SetTakesTouches(false);
    rig.Tap(15, 115);
    inner.SetVisible(false);
    rig.Tap(15, 115);
    EXPECT_EQ((Log{"inner press 0 5,5", "inner release 0 5,5", "left press 0 15,15", "left release 0 15,15"}),
              rig.TakeLog());
    rig.form->SetVisible(false);
    rig.Tap(15, 115);
    EXPECT_TRUE(rig.TakeLog().empty());
}

TEST(Fingers, AreLiftedByWhateverTakesThemAway) {
    struct Case {
        const char* what;
        std::function<void(Holes&)> takeAway;
    };
    const Case cases[] = {
        {"cancel", [](Holes& rig) { rig.Touch(TouchPhase::kCancel, 0, 0); }},
        {"input lost", [](Holes& rig) { rig.screen_.OnInputLost(); }},
        {"the foreground again",
         [](Holes& rig) {
             rig.screen_.SuspendInput();
             rig.screen_.ResumeInput();
         }},
        {"control hidden", [](Holes& rig) { rig.left->SetVisible(false); }},
        {"form hidden", [](Holes& rig) { rig.form->SetVisible(false); }},
        {"another form", [](Holes& rig) { rig.ShowForm("other"); }},
        {"a popup",
         [](Holes& rig) {
             rig.ShowPopup("popup", {10, 10, 20, 20});
         }},
    };
    for (const Case& each : cases) {
        Holes rig;
        rig.Touch(TouchPhase::kDown, 10, 110);
        rig.TakeLog();
        each.takeAway(rig);
        EXPECT_EQ((Log{"left release 0 10,10"}), rig.TakeLog()) << each.what;
        rig.Touch(TouchPhase::kUp, 10, 110);
        EXPECT_TRUE(rig.TakeLog().empty()) << each.what;
    }
}

TEST(Fingers, AreForgottenWithTheirControl) {
    Holes rig;
    rig.Touch(TouchPhase::kDown, 10, 110);
    rig.Recorder("right").react_ = [&rig](const std::string&) { rig.Destroy("left"); };
    rig.Touch(TouchPhase::kDown, 60, 110, 1);
    rig.TakeLog();
    rig.Touch(TouchPhase::kMove, 12, 112);
    rig.Touch(TouchPhase::kUp, 12, 112);
    EXPECT_TRUE(rig.TakeLog().empty());
    rig.Tap(10, 110);
    EXPECT_EQ((Log{"form press 0 10,110", "form release 0 10,110"}), rig.TakeLog());
}

TEST(Fingers, AreWhereTheyAreToThePixelAtEveryScale) {
    struct Row {
        host::PixelSize window;
        double scale;
        double left;  // of the phone's screen in the window
    };
    for (const Row& row : {Row{{100, 200}, 1, 0}, Row{{125, 250}, 1.25, 0}, Row{{181, 300}, 1.5, 15},
                           Row{{260, 400}, 2, 30}, Row{{333, 350}, 1.75, 79}}) {
        Holes rig(row.window);
        if (row.left > 0) rig.Tap(row.left - 0.5, 105 * row.scale);
        EXPECT_TRUE(rig.TakeLog().empty()) << "beside the screen";
        for (int x = 0; x < 50; x += 7) {
            // Just within the phone's pixel, at both of its sides.
            for (const double within : {0.02, 0.98}) {
                const double at = row.left + (x + within) * row.scale;
                rig.Tap(at, 105 * row.scale);
                const std::string place = std::to_string(x) + ",5";
                EXPECT_EQ((Log{"left press 0 " + place, "left release 0 " + place}), rig.TakeLog())
                    << row.scale << ' ' << at;
            }
        }
    }
}

TEST(Popups, AloneAreTouchedWhileTheyAreShown) {
    Holes rig;
    rig.ShowPopup("lower", {0, 100, 100, 50});
    rig.ShowPopup("upper", {10, 110, 20, 20});
    rig.Tap(15, 115);
    rig.Tap(80, 120);
    EXPECT_EQ((Log{"upper press 0 5,5", "upper release 0 5,5"}), rig.TakeLog())
        << "outside of the topmost nothing happens";
    rig.Destroy("upper");
    rig.Tap(80, 120);
    rig.Tap(80, 190);
    EXPECT_EQ((Log{"lower press 0 80,20", "lower release 0 80,20"}), rig.TakeLog());
    rig.Destroy("lower");
    rig.Tap(80, 190);
    EXPECT_EQ((Log{"right press 0 30,90", "right release 0 30,90"}), rig.TakeLog());
}

TEST(Buttons, ActWhenTheFingerIsLiftedOnThemAndNotOtherwise) {
    ScreenRig rig;
    auto& form = rig.ShowForm();
    auto& button = rig.Add<host::ButtonNode>("button", {10, 10, 50, 20}, &form);
    host::BoxLook look;
    look.background = {200, 0, 0, 255};
    button.SetLook(look, host::Rgba{0, 200, 0, 255});
    const auto isPressed = [&rig] {
        rig.Compose();
        return rig.Pixel(20, 20) == host::Rgba{0, 200, 0, 255};
    };
    const auto actions = [&rig] {
        const Log log = rig.TakeLog();
        return std::count(log.begin(), log.end(), "button action");
    };
    EXPECT_FALSE(isPressed());
    rig.Touch(TouchPhase::kDown, 20, 20);
    EXPECT_TRUE(isPressed());
    rig.Touch(TouchPhase::kUp, 20, 20);
    EXPECT_FALSE(isPressed());
    EXPECT_EQ(1, actions());

    rig.Touch(TouchPhase::kDown, 20, 20);
    rig.Touch(TouchPhase::kMove, 20, 50);
    EXPECT_FALSE(isPressed());
    rig.Touch(TouchPhase::kUp, 20, 50);
    EXPECT_EQ(0, actions()) << "lifted beside it";
    rig.Touch(TouchPhase::kDown, 20, 20);
    rig.Touch(TouchPhase::kCancel, 20, 20);
    EXPECT_FALSE(isPressed());
    EXPECT_EQ(0, actions()) << "cancelled";
    rig.Touch(TouchPhase::kDown, 20, 50);
    rig.Touch(TouchPhase::kMove, 20, 20);
    rig.Touch(TouchPhase::kUp, 20, 20);
    EXPECT_EQ(0, actions()) << "put down beside it";

    rig.Recorder("button").react_ = [&rig](const std::string& what) {
        if (what == "action") rig.Destroy("button");
    };
    rig.Tap(20, 20);
    EXPECT_EQ(1, actions()) << "which may be its end";
}

TEST(Buttons, DarkenTheirOwnColourUnlessTheyHaveAnotherForThePress) {
    constexpr host::Rgba kBlue{0, 0, 200, 255};
    constexpr host::Rgba kDarkBlue{0, 0, 160, 255};
    constexpr host::Rgba kRed{200, 0, 0, 255};
    ScreenRig rig;
    auto& button = rig.Add<host::ButtonNode>("button", {10, 10, 50, 20}, &rig.ShowForm());
    const auto colors = [&rig] {
        std::vector<host::Rgba> seen;
        for (const host::TouchPhase phase : {host::TouchPhase::kUp, host::TouchPhase::kDown}) {
            rig.Touch(phase, 12, 12);
            rig.Compose();
            seen.push_back(rig.Pixel(20, 20));
        }
        rig.Touch(host::TouchPhase::kUp, 12, 12);
        return seen;
    };
    host::BoxLook look;
    look.background = kRed;
    button.SetLook(look, std::nullopt);
    button.SetColor(host::ButtonNode::State::kNormal, kBlue);
    EXPECT_EQ((std::vector<host::Rgba>{kBlue, kDarkBlue}), colors());
    button.SetColor(host::ButtonNode::State::kPressed, kRed);
    EXPECT_EQ((std::vector<host::Rgba>{kBlue, kRed}), colors());
}

TEST(Buttons, GiveATextAnEdgeAsStrongAsItsContrastNeeds) {
    constexpr host::Rgba kWhite{255, 255, 255, 255};
    constexpr host::Rgba kReadable{0, 0, 0, 255};
    constexpr host::Rgba kNearly{150, 150, 150, 255};
    constexpr host::Rgba kHardly{230, 230, 230, 255};
    ScreenRig rig({400, 800});
    auto& button = rig.Add<host::ButtonNode>("button", {0, 0, 100, 40}, &rig.ShowForm());
    host::BoxLook look;
    look.background = kWhite;
    button.SetLook(look, std::nullopt);
    host::TextLook text;
    text.text = "o";
    text.size = 30;
    // The pixels that are nearly black: with a readable text its own, with others the edge's.
    const auto dark = [&](host::Rgba color) {
        text.color = color;
        button.SetTextLook(text, std::nullopt);
        rig.Compose();
        int count = 0;
        for (int y = 0; y < 160; ++y) {
            for (int x = 0; x < 400; ++x) count += rig.Pixel(x, y).red < 60 ? 1 : 0;
        }
        return count;
    };
    EXPECT_GT(dark(kReadable), 0);
    const int nearly = dark(kNearly);
    const int hardly = dark(kHardly);
    EXPECT_GT(nearly, 0);
    EXPECT_GT(hardly, nearly * 3 / 2);
}

TEST(Pointer, IsAHandOverWhatCanBePressed) {
    Holes rig({400, 800});
    auto& button = rig.Add<host::ButtonNode>("button", {10, 10, 20, 20}, rig.form);
    EXPECT_EQ(host::Pointer::kArrow, rig.screen_.PointerAt(4 * 20, 4 * 20)) << "nobody hears of this button";
    button.SetActing(true);
    EXPECT_EQ(host::Pointer::kHand, rig.screen_.PointerAt(4 * 20, 4 * 20));
    EXPECT_EQ(host::Pointer::kArrow, rig.screen_.PointerAt(4 * 40, 4 * 20));
    rig.left->SetMultipoint(true);
    EXPECT_EQ(host::Pointer::kHand, rig.screen_.PointerAt(4 * 10, 4 * 150));
    rig.ShowPopup("popup", {0, 0, 50, 50});
    EXPECT_EQ(host::Pointer::kArrow, rig.screen_.PointerAt(4 * 10, 4 * 150)) << "a popup keeps it from what is below";
}
