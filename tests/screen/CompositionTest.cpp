// What is painted and presented: all that has changed, once a frame, and nothing else.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "runtime/screen/composing/Compositor.h"
#include "runtime/screen/composing/Damage.h"
#include "screen/ScreenRig.h"
#include "support/Pixels.h"

using host::PixelRect;
using host::Rgba;

namespace {

constexpr Rgba kRed{200, 0, 0, 255};
constexpr Rgba kGreen{0, 200, 0, 255};
constexpr Rgba kBlue{0, 0, 200, 255};
constexpr Rgba kBlack{0, 0, 0, 255};

std::vector<Rgba> AllPixels(ScreenRig& rig) {
    std::vector<Rgba> pixels;
    const host::PixelSize size = rig.window_.Size();
    for (int y = 0; y < size.height; ++y) {
        for (int x = 0; x < size.width; ++x) pixels.push_back(rig.Pixel(x, y));
    }
    return pixels;
}

// Of any channel of any pixel.
int LargestDifference(const std::vector<Rgba>& left, const std::vector<Rgba>& right) {
    int largest = 0;
    for (std::size_t i = 0; i < left.size(); ++i) {
        largest = std::max({largest, std::abs(left[i].red - right[i].red), std::abs(left[i].green - right[i].green),
                            std::abs(left[i].blue - right[i].blue)});
    }
    return largest;
}

}  // namespace

TEST(Composition, PresentsOnlyThePlaceThatHasChanged) {
    ScreenRig rig;
    auto& form = rig.ShowForm();
    form.SetBackground(kBlue);
    auto& left = rig.Add("left", {0, 100, 50, 100}, &form);
    rig.Add("right", {50, 100, 50, 100}, &form);
    rig.Recorder("left").color_ = rig.Recorder("right").color_ = kRed;
    rig.Compose();
    EXPECT_EQ(kBlue, rig.Pixel(50, 50));
    EXPECT_EQ(kRed, rig.Pixel(0, 100));
    EXPECT_EQ(kRed, rig.Pixel(99, 199));

    rig.Recorder("left").color_ = kGreen;
    left.RequestRedraw(host::Node::Extent::kTree);
    rig.Compose();
    EXPECT_EQ((std::vector<PixelRect>{{0, 100, 50, 100}}), rig.window_.presented_);
    EXPECT_EQ(kGreen, rig.Pixel(49, 199));
    EXPECT_EQ(kRed, rig.Pixel(50, 199));

    // A redraw that gives the same drawing costs no pixel.
    const auto frames = rig.screen_.GetCompositor().FramesComposed();
    const int draws = rig.Recorder("right").draws_;
    form.RequestRedraw(host::Node::Extent::kTree);
    rig.Compose();
    EXPECT_EQ(draws + 1, rig.Recorder("right").draws_);
    EXPECT_EQ(frames, rig.screen_.GetCompositor().FramesComposed());
    EXPECT_TRUE(rig.window_.presented_.empty());
    rig.Compose();
    EXPECT_EQ(draws + 1, rig.Recorder("right").draws_) << "nothing is drawn while nothing is asked for";
}

TEST(Composition, GivesThePixelsOfAFullPaintingAfterEveryPartialOne) {
    // At another scale too, where edges fall between the pixels; and with texts, which are shaped for it.
    for (const host::PixelSize window : {host::PixelSize{100, 200}, host::PixelSize{167, 301}}) {
        ScreenRig rig(window);
        auto& form = rig.ShowForm();
        form.SetBackground(kBlue);
        auto& hole = rig.Add("hole", {7, 90, 61, 77}, &form);
        rig.Recorder("hole").color_ = kRed;
        auto& label = rig.Add("label", {40, 80, 55, 30}, &form);
        host::BoxLook look;
        look.background = {255, 255, 255, 100};
        look.corner = 9;
        look.border = kBlack;
        look.borderWidth = 3;
        label.SetLook(look);
        host::TextLook text;
        text.text = "Ab";
        text.size = text.smallestSize = 14;
        label.SetTextLook(text);
        rig.Compose();
        const std::function<void()> changes[] = {
            [&] {
                hole.Draw(host::FilledEllipse{{10, -9, 40, 90}, kGreen});
            },
            [&] { label.SetText("Cd"); },
            [&] {
                label.SetBounds({30, 70, 40, 25});
            },
            [&] { hole.SetVisible(false); },
            [&] { hole.SetVisible(true); },
            [&] {
                rig.ShowPopup("popup", {20, 60, 60, 60}).SetLook(look);
            },
            [&] { form.SetBackground(kGreen); },
            [&] { rig.Destroy("popup"); },
        };
        int number = 0;
        for (const auto& change : changes) {
            change();
            rig.Compose();
            ASSERT_FALSE(rig.window_.presented_.empty()) << number;
            const auto partial = AllPixels(rig);
            rig.screen_.OnExposed();
            rig.Compose();
            // Blending one after another rounds otherwise than blending a surface of the whole.
            EXPECT_LE(LargestDifference(partial, AllPixels(rig)), 2)
                << "change " << number << " at width " << window.width;
            ++number;
        }
    }
}

TEST(Composition, TakesPlaceAtOnceAndThenOnceADisplayFrame) {
    ScreenRig rig;
    auto& form = rig.ShowForm();
    auto change = [&form, value = 0]() mutable { form.SetBackground({static_cast<std::uint8_t>(++value), 0, 0, 255}); };
    const host::Microseconds frame = TestWindow::kFrameInterval;
    change();
    EXPECT_EQ(host::LoopClient::kNever, rig.screen_.ComposeIfDue(1000));
    EXPECT_EQ(1U, rig.screen_.GetCompositor().FramesComposed());
    change();
    EXPECT_EQ(1000 + frame, rig.screen_.ComposeIfDue(1001));
    change();
    EXPECT_EQ(1000 + frame, rig.screen_.ComposeIfDue(999 + frame));
    EXPECT_EQ(1U, rig.screen_.GetCompositor().FramesComposed());
    EXPECT_EQ(host::LoopClient::kNever, rig.screen_.ComposeIfDue(1000 + frame));
    EXPECT_EQ(2U, rig.screen_.GetCompositor().FramesComposed());
    change();
    EXPECT_EQ(host::LoopClient::kNever, rig.screen_.ComposeIfDue(1000 + 5 * frame)) << "after a pause at once again";
    EXPECT_EQ(3U, rig.screen_.GetCompositor().FramesComposed());

    rig.screen_.SetVisibility(host::Visibility::kHidden);
    change();
    EXPECT_EQ(host::LoopClient::kNever, rig.screen_.ComposeIfDue(1000 + 9 * frame));
    EXPECT_EQ(3U, rig.screen_.GetCompositor().FramesComposed()) << "nobody would see it";
    rig.screen_.SetVisibility(host::Visibility::kVisible);
    rig.screen_.ComposeIfDue(1000 + 9 * frame);
    EXPECT_EQ(4U, rig.screen_.GetCompositor().FramesComposed());
    EXPECT_EQ((std::vector<PixelRect>{{0, 0, 100, 200}}), rig.window_.presented_);
}

TEST(Composition, LeavesHiddenThingsUndrawn) {
    ScreenRig rig;
    auto& form = rig.ShowForm();
    auto& panel = rig.Add("panel", {0, 0, 50, 50}, &form);
    rig.Add("child", {0, 0, 20, 20}, &panel);
    panel.SetVisible(false);
    rig.ShowForm("other");
    rig.Compose();
    EXPECT_EQ(0, rig.Recorder("form").draws_);
    rig.screen_.SetCurrentForm(&form);
    rig.Compose();
    EXPECT_EQ(1, rig.Recorder("form").draws_);
    EXPECT_EQ(0, rig.Recorder("child").draws_);
    panel.SetVisible(true);
    rig.Compose();
    EXPECT_EQ(1, rig.Recorder("child").draws_);
}

TEST(Composition, FollowsTheWindowsSizeWithEveryVisibleControl) {
    ScreenRig rig;
    auto& form = rig.ShowForm();
    form.SetBackground(kBlue);
    auto& hole = rig.Add("hole", {0, 100, 50, 100}, &form);
    rig.Recorder("hole").color_ = kRed;
    rig.Compose();
    rig.screen_.OnExposed();
    rig.Compose();
    const int draws = rig.Recorder("hole").draws_;

    rig.window_.Resize({500, 500});  // scaled by 2.5, black at 125 pixels of either side
    rig.screen_.OnResized();
    rig.Compose();
    EXPECT_EQ(draws + 1, rig.Recorder("hole").draws_);
    hole.Draw(host::FilledEllipse{{0, 0, 50, 100}, kGreen});
    rig.Compose();
    EXPECT_EQ((std::vector<PixelRect>{{125, 250, 125, 250}}), rig.window_.presented_);
    EXPECT_EQ(kBlack, rig.Pixel(124, 400));
    EXPECT_EQ(kRed, rig.Pixel(125, 250));
    EXPECT_EQ(kGreen, rig.Pixel(187, 375));
    EXPECT_EQ(kRed, rig.Pixel(249, 499));
    EXPECT_EQ(kBlue, rig.Pixel(250, 499));
    EXPECT_EQ(kBlack, rig.Pixel(375, 250));
}

TEST(Composition, KeepsWhatIsDrawnWithoutEndOutsideOfOnDraw) {
    ScreenRig rig;
    auto& form = rig.ShowForm();
    auto& hole = rig.Add("hole", {0, 0, 50, 50}, &form);
    rig.Compose();
    hole.Draw(host::FilledEllipse{{0, 0, 10, 10}, kGreen});
    for (int i = 0; i < 2000; ++i) hole.Draw(host::FilledRectangle{{20, 20, 10, 10}, kBlue});
    rig.Compose();
    EXPECT_EQ(kGreen, rig.Pixel(5, 5));
    EXPECT_EQ(kBlue, rig.Pixel(25, 25));
    hole.Draw(host::FilledRectangle{{30, 30, 10, 10}, kRed});
    rig.Compose();
    EXPECT_EQ(kGreen, rig.Pixel(5, 5));
    EXPECT_EQ(kRed, rig.Pixel(35, 35));
}

TEST(Composition, GoesOnWhenAChildDestroysItsParentWhileItIsDrawn) {
    ScreenRig rig;
    auto& form = rig.ShowForm();
    auto& parent = rig.Add("parent", {0, 0, 50, 50}, &form);
    struct Destroyer final : host::NodeDelegate {
        explicit Destroyer(ScreenRig& owner) : rig(owner) {}
        void OnDraw() override { rig.Destroy("parent"); }
        void OnFinger(const host::FingerEvent&) override {}
        void OnBackKey(host::BackKeyPhase) override {}
        void OnAction() override {}
        void OnColorChange() override {}
        ScreenRig& rig;
    } destroyer(rig);
    rig.Add("child", {0, 0, 20, 20}, &parent).SetDelegate(&destroyer);
    rig.Add("last", {60, 60, 20, 20}, &form);
    rig.Recorder("last").color_ = kRed;
    rig.Compose();
    rig.Compose();
    EXPECT_EQ(kRed, rig.Pixel(70, 70));
}

TEST(Damage, StaysAFewRectanglesThatHoldAllThatChanged) {
    host::Damage damage;
    std::vector<PixelRect> added;
    for (int i = 0; i < 100; ++i) added.push_back({(i * 37) % 700, (i * 91) % 1200, 5 + i % 7, 4 + i % 11});
    for (const PixelRect& rect : added) damage.Add(rect);
    EXPECT_LE(damage.Rects().size(), 8U);
    for (const PixelRect& rect : added) {
        const auto holds = [&rect](const PixelRect& held) { return held.Contains(rect); };
        EXPECT_TRUE(std::any_of(damage.Rects().begin(), damage.Rects().end(), holds));
    }
    host::Damage apart;
    apart.Add({0, 0, 10, 10});
    apart.Add({600, 1000, 10, 10});
    EXPECT_EQ(2U, apart.Rects().size()) << "far things are not taken together";
}
