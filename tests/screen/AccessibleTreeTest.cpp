// The screen in words: what a screen reader finds, and what it can do, on the ocarina's own screens.

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "runtime/Phone.h"
#include "runtime/screen/AccessibleTree.h"
#include "runtime/screen/Screen.h"
#include "support/TestPhone.h"

namespace {

using host::AccessibleItem;
using host::AccessibleRole;
using Lines = std::vector<std::string>;

const AccessibleItem& Named(const host::AccessibleScreen& screen, const std::string& name, AccessibleRole role) {
    for (const AccessibleItem& item : screen.items) {
        if (item.name == name && item.role == role) return item;
    }
    ADD_FAILURE() << "nothing is called " << name;
    static const AccessibleItem none;
    return none;
}

/// "heading Settings", "switch Automatic play off", "slider Red 12 of 255"; texts are left out.
Lines Summary(const host::AccessibleScreen& screen) {
    Lines lines;
    for (const AccessibleItem& item : screen.items) {
        if (item.role == AccessibleRole::kText) continue;
        const std::map<AccessibleRole, std::string> kinds = {{AccessibleRole::kHeading, "heading "},
                                                             {AccessibleRole::kButton, "button "},
                                                             {AccessibleRole::kSwitch, "switch "},
                                                             {AccessibleRole::kSlider, "slider "}};
        lines.push_back(kinds.at(item.role) + item.name);
        if (item.role == AccessibleRole::kSwitch) lines.back() += item.isOn ? " on" : " off";
        if (item.role == AccessibleRole::kSlider) {
            lines.back() += ' ' + std::to_string(item.value) + " of " + std::to_string(item.most);
        }
    }
    return lines;
}

constexpr int kPlayScreen = 3000;
constexpr int kStep = 200;

}  // namespace

TEST(AccessibleTree, LeadsThroughEveryScreenWithoutAFinger) {
    TestPhone phone;
    host::AccessibleTree tree(phone.GetScreen());
    const auto press = [&tree](const std::string& name) {
        const bool isPressed = tree.Activate(Named(tree.DescribeScreen(), name, AccessibleRole::kButton).id);
        EXPECT_TRUE(isPressed) << name;
    };
    std::uint64_t menu = 0;
    int at = kPlayScreen;
    const auto then = [&phone, &at](std::function<void()> action) { phone.At(at += kStep, std::move(action)); };
    then([&] {
        const auto screen = tree.DescribeScreen();
        ASSERT_EQ(1U, screen.items.size()) << "the meter covers the text of automatic play";
        EXPECT_EQ(Lines{"button Menu"}, Summary(screen));
        EXPECT_TRUE(screen.isPlayedOn);
        EXPECT_EQ((host::PixelRect{24, 24, 96, 96}), screen.items.front().bounds);
        menu = screen.items.front().id;
        press("Menu");
    });
    then([&] {
        EXPECT_EQ((Lines{"button Menu", "button Help", "button Settings"}), Summary(tree.DescribeScreen()));
        EXPECT_EQ(menu, tree.DescribeScreen().items.front().id) << "what stays keeps its id";
        press("Help");
    });
    then([&] {
        const auto screen = tree.DescribeScreen();
        EXPECT_EQ(host::AccessibleKind::kDialog, screen.kind);
        EXPECT_FALSE(screen.isPlayedOn);
        EXPECT_FALSE(tree.Activate(menu)) << "what lies under a dialog cannot be reached";
        EXPECT_EQ("heading Help", Summary(screen).front());
        EXPECT_NE("", Named(screen, "A filled dot is a covered hole.", AccessibleRole::kText).name);
        press("Close");
    });
    then([&] { press("Menu"); });
    then([&] { press("Settings"); });
    then([&] {
        const auto screen = tree.DescribeScreen();
        EXPECT_EQ(host::AccessibleKind::kForm, screen.kind);
        EXPECT_EQ((Lines{"heading Settings", "switch Automatic play off", "button Background colour",
                         "button Hole colour", "button Close"}),
                  Summary(screen));
        EXPECT_TRUE(tree.Activate(Named(screen, "Automatic play", AccessibleRole::kSwitch).id));
        EXPECT_FALSE(tree.SetValue(Named(screen, "Close", AccessibleRole::kButton).id, 1)) << "a button is no slider";
        EXPECT_EQ("switch Automatic play on", Summary(tree.DescribeScreen())[1]);
        press("Hole colour");
    });
    then([&] {
        const auto screen = tree.DescribeScreen();
        EXPECT_TRUE(tree.SetValue(Named(screen, "Red", AccessibleRole::kSlider).id, 12));
        EXPECT_TRUE(tree.SetValue(Named(screen, "Green", AccessibleRole::kSlider).id, 0));
        EXPECT_TRUE(tree.SetValue(Named(screen, "Blue", AccessibleRole::kSlider).id, 1000));
        EXPECT_EQ((Lines{"heading Colours", "button Holes", "button Background", "slider Hue 243 of 360",
                         "slider Saturation 100 of 100", "slider Brightness 100 of 100", "slider Red 12 of 255",
                         "slider Green 0 of 255", "slider Blue 255 of 255", "button Cancel", "button OK"}),
                  Summary(tree.DescribeScreen()));
        EXPECT_TRUE(tree.SetValue(Named(screen, "Hue", AccessibleRole::kSlider).id, 120));
        EXPECT_EQ("slider Green 255 of 255", Summary(tree.DescribeScreen())[7]);
        press("OK");
    });
    then([&] { press("Close"); });
    then([&] {
        phone.GetPhone().EnterBackground();
        EXPECT_FALSE(tree.Activate(menu)) << "the background gets no fingers";
        EXPECT_FALSE(tree.Activate(0));
    });
    phone.RunOcarina(at + kStep);
    EXPECT_NE(std::string::npos, phone.Data().Read("info.ini").find("AutoPlay=1")) << "the switch was really turned";
}
