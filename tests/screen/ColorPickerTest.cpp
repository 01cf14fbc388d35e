// Picking a colour: exactly, by every way, and reported neither too often nor too late.

#include <gtest/gtest.h>

#include <tuple>

#include "runtime/screen/controls/ColorPickerNode.h"
#include "screen/ScreenRig.h"

using host::ColorPickerNode;
using host::ColorPickerParts;
using host::Rgba;
using host::TouchPhase;

namespace {

struct Picker : ScreenRig {
    Picker() : ScreenRig({800, 1600}) {
        node = &Add<ColorPickerNode>("picker", {5, 20, 90, 100}, &ShowForm());
        Compose();
        TakeLog();
    }
    /// Device pixels of a place in the picker, at the fraction of one of its parts.
    host::PointF At(const host::RectF& part, double x, double y) const {
        return {8 * (5 + part.x + x * part.width), 8 * (20 + part.y + y * part.height)};
    }
    void Put(TouchPhase phase, const host::PointF& place) { Touch(phase, place.x, place.y); }
    std::size_t Reports() {
        std::size_t reports = 0;
        for (const std::string& line : TakeLog()) reports += line == "picker color" ? 1 : 0;
        return reports;
    }

    ColorPickerNode* node;
    ColorPickerParts parts{{90, 100}};
};

}  // namespace

TEST(PickedColor, KeepsEveryColourExactlyThroughHueAndBrightness) {
    for (int red = 0; red < 256; red += 5) {
        for (int green = 0; green < 256; green += 3) {
            for (int blue = 0; blue < 256; blue += 15) {
                const Rgba color{static_cast<std::uint8_t>(red), static_cast<std::uint8_t>(green),
                                 static_cast<std::uint8_t>(blue), 77};
                host::PickedColor picked;
                picked.Set(color);
                ASSERT_EQ(color, picked.Color());
                picked.SetBrightness(picked.Brightness());
                ASSERT_EQ(color, picked.Color()) << red << ' ' << green << ' ' << blue;
            }
        }
    }
}

TEST(PickedColor, RemembersTheHueOfGreysAndOfBlack) {
    host::PickedColor picked;
    picked.Set({40, 160, 80, 255});
    const double hue = picked.Hue();
    picked.SetBrightness(0);
    EXPECT_EQ((Rgba{0, 0, 0, 255}), picked.Color());
    picked.SetBrightness(160 / 255.0);
    EXPECT_EQ((Rgba{40, 160, 80, 255}), picked.Color());
    picked.SetHueAndSaturation(hue, 0);
    picked.SetBrightness(0.5);
    EXPECT_EQ((Rgba{128, 128, 128, 255}), picked.Color());
    picked.Set({9, 9, 9, 255});
    EXPECT_DOUBLE_EQ(hue, picked.Hue());
    picked.Set({0, 0, 0, 255});
    picked.SetHueAndSaturation(2, 1);
    EXPECT_EQ((Rgba{0, 255, 0, 255}), picked.Color()) << "on black nothing else could be seen";
}

TEST(ColorPicker, FollowsTheFingerInFieldAndSlider) {
    struct Case {
        double x, y;
        Rgba color;
    };
    const Case cases[] = {{0, 0, {255, 0, 0, 9}},
                          {1.0 / 3, 0, {0, 255, 0, 9}},
                          {2.0 / 3, 0, {0, 0, 255, 9}},
                          {0.5, 0.5, {128, 255, 255, 9}},
                          {0.5, 1, {255, 255, 255, 9}}};
    Picker rig;
    rig.node->SetColor({255, 255, 255, 9});
    rig.Put(TouchPhase::kDown, rig.At(rig.parts.field, 0.3, 0.3));
    for (const Case& each : cases) {
        rig.Put(TouchPhase::kMove, rig.At(rig.parts.field, each.x, each.y));
        EXPECT_EQ(each.color, rig.node->GetColor()) << each.x << ' ' << each.y;
    }
    rig.Put(TouchPhase::kMove, rig.At(rig.parts.field, 1.0 / 3, -3));
    rig.Put(TouchPhase::kUp, rig.At(rig.parts.slider, 0.5, 0.5));
    EXPECT_EQ(9, rig.node->GetColor().alpha);
    rig.node->SetColor({0, 200, 0, 255});
    rig.Put(TouchPhase::kDown, rig.At(rig.parts.slider, 0.5, 0.5));
    EXPECT_EQ((Rgba{0, 128, 0, 255}), rig.node->GetColor());
    rig.Put(TouchPhase::kUp, rig.At(rig.parts.slider, 0.5, 2));
    EXPECT_EQ((Rgba{0, 0, 0, 255}), rig.node->GetColor());
}

TEST(ColorPicker, ReportsOnceAFrameAndTheLastColourAlways) {
    Picker rig;
    rig.node->SetColor({1, 2, 3, 255});
    rig.Compose();
    EXPECT_EQ(0U, rig.Reports()) << "what the program sets is not reported";
    rig.Put(TouchPhase::kDown, rig.At(rig.parts.field, 0.1, 0.3));
    for (int i = 0; i < 20; ++i) rig.Put(TouchPhase::kMove, rig.At(rig.parts.field, 0.1 + 0.01 * i, 0.3));
    EXPECT_EQ(0U, rig.Reports());
    rig.Compose();
    EXPECT_EQ(1U, rig.Reports());
    rig.Put(TouchPhase::kMove, rig.At(rig.parts.field, 0.7, 0.3));
    rig.Put(TouchPhase::kUp, rig.At(rig.parts.field, 0.8, 0.3));
    EXPECT_EQ(1U, rig.Reports()) << "before anybody can confirm it";
    rig.Compose();
    EXPECT_EQ(0U, rig.Reports());
    rig.node->Pick({9, 8, 7, 255});
    EXPECT_EQ(1U, rig.Reports());
    EXPECT_EQ((Rgba{9, 8, 7, 255}), rig.node->GetColor());

    rig.TakeLog();
    rig.Put(TouchPhase::kDown, rig.At(rig.parts.field, 0.5, 0.3));
    rig.Compose();
    rig.Reports();
    rig.Touch(TouchPhase::kDown, 10, 10, 1);
    rig.Put(TouchPhase::kMove, rig.At(rig.parts.field, 0.6, 0.3));
    rig.Touch(TouchPhase::kUp, 10, 10, 1);
    EXPECT_EQ((std::vector<std::string>{"picker color", "form release 1 1,1"}),
              (std::vector<std::string>{rig.log_.end() - 2, rig.log_.end()}))
        << "told before another finger can confirm";
    rig.Put(TouchPhase::kUp, rig.At(rig.parts.field, 0.6, 0.3));
    rig.TakeLog();

    rig.Recorder("picker").react_ = [&rig](const std::string&) { rig.Destroy("picker"); };
    rig.Put(TouchPhase::kDown, rig.At(rig.parts.channels[0].plus, 0.5, 0.5));
    rig.Compose();
    EXPECT_EQ(0U, rig.Reports()) << "it is gone with its first event";
}

TEST(ColorPicker, LetsGoOfTheFormerColourWhenItIsSetToAnother) {
    const Rgba other{1, 2, 3, 255};
    Picker rig;
    for (const host::RectF& part : {rig.parts.field, rig.parts.slider, rig.parts.channels[0].plus}) {
        rig.node->SetColor({10, 20, 254, 255});
        rig.Put(TouchPhase::kDown, rig.At(part, 0.5, 0.5));
        rig.Compose();
        rig.node->SetColor(other);
        for (int frames = 0; frames < 60; ++frames) rig.Compose();
        EXPECT_EQ(other, rig.node->GetColor()) << "a held stepper rests";
        rig.Put(TouchPhase::kUp, rig.At(part, 0.5, 0.5));
        EXPECT_EQ(other, rig.node->GetColor()) << "a lifted finger changes nothing";
    }
}

TEST(ColorPicker, TakesTheExactValueByTouch) {
    Picker rig;
    rig.node->SetColor({1, 2, 3, 9});
    const auto tap = [&rig](const host::RectF& part) {
        const auto place = rig.At(part, 0.5, 0.5);
        rig.Tap(place.x, place.y);
    };
    const auto type = [&](std::initializer_list<int> digits) {
        for (const int digit : digits) tap(rig.parts.keys[static_cast<std::size_t>(digit)]);
    };
    tap(rig.parts.digits);
    type({1, 0, 2, 0xF});
    tap(rig.parts.keys[ColorPickerParts::kEraseKey]);
    type({0, 3});
    EXPECT_EQ((Rgba{1, 2, 3, 9}), rig.node->GetColor()) << "five digits are no colour";
    EXPECT_EQ(0U, rig.Reports());
    type({0xF});
    EXPECT_EQ((Rgba{0x10, 0x20, 0x3F, 9}), rig.node->GetColor());
    rig.Compose();
    EXPECT_EQ(1U, rig.Reports());

    // The keys are gone again: where they were, the field takes the finger.
    tap(rig.parts.field);
    EXPECT_NE((Rgba{0x10, 0x20, 0x3F, 9}), rig.node->GetColor());

    // Left without a colour, by its own key or by the digits again.
    const Rgba before = rig.node->GetColor();
    for (const host::RectF& way : {rig.parts.keys[ColorPickerParts::kLeaveKey], rig.parts.digits}) {
        tap(rig.parts.digits);
        type({5, 5});
        tap(way);
        EXPECT_EQ(before, rig.node->GetColor());
        tap(rig.parts.digits);
        type({1, 2, 3, 4, 5});
        EXPECT_EQ(before, rig.node->GetColor()) << "what was typed before is forgotten";
        tap(rig.parts.digits);
    }
}

TEST(ColorPicker, StepsEachChannelAndRepeatsWhileHeld) {
    Picker rig;
    rig.node->SetColor({10, 20, 254, 255});
    for (std::size_t i = 0; i < rig.parts.channels.size(); ++i) {
        for (int taps = 0; taps < 2; ++taps) {
            const auto place = rig.At(i == 1 ? rig.parts.channels[i].minus : rig.parts.channels[i].plus, 0.5, 0.5);
            rig.Tap(place.x, place.y);
        }
    }
    EXPECT_EQ((Rgba{12, 18, 255, 255}), rig.node->GetColor());

    // Held it goes on, slowly at first, and rests while the finger is beside it.
    rig.node->SetColor({200, 0, 0, 255});
    const auto& [minus, plus] = std::tie(rig.parts.channels[0].minus, rig.parts.channels[0].plus);
    rig.Put(TouchPhase::kDown, rig.At(minus, 0.5, 0.5));
    const auto composeFor = [&rig](int ms) {
        for (int passed = 0; passed < ms; passed += 16) rig.Compose();
    };
    composeFor(1000);
    const int after = rig.node->GetColor().red;
    EXPECT_LE(after, 200 - 5);
    EXPECT_GE(after, 200 - 14) << "near values can be met";
    rig.Put(TouchPhase::kMove, rig.At(rig.parts.field, 0.5, 0.5));
    composeFor(50);
    EXPECT_NEAR(after, rig.node->GetColor().red, 1);
    rig.Put(TouchPhase::kMove, rig.At(minus, 0.5, 0.5));
    composeFor(2000);
    EXPECT_EQ(0, rig.node->GetColor().red) << "a whole channel in three seconds";
    rig.Put(TouchPhase::kUp, rig.At(minus, 0.5, 0.5));
    composeFor(1000);
    const auto place = rig.At(plus, 0.5, 0.5);
    rig.Tap(place.x, place.y);
    EXPECT_EQ(1, rig.node->GetColor().red) << "a new press begins slowly again";
}

TEST(ColorPicker, IsSetByArrowsAndTypedDigitsWhileItHasTheFocus) {
    Picker rig;
    rig.node->SetColor({255, 100, 50, 40});
    rig.Stroke("ArrowUp");
    EXPECT_EQ((Rgba{255, 100, 50, 40}), rig.node->GetColor()) << "not without the focus";
    rig.Stroke("Tab");
    for (const char* code : {"ArrowUp", "ArrowRight", "ArrowDown", "ArrowLeft", "ArrowLeft"}) rig.Stroke(code);
    rig.Stroke("ArrowUp", host::ShiftKey::kHeld);
    rig.screen_.OnKey({"ArrowUp", host::KeyPhase::kDown, host::ShiftKey::kReleased});
    rig.screen_.OnKey({"ArrowUp", host::KeyPhase::kRepeat, host::ShiftKey::kReleased});
    rig.Lift("ArrowUp");
    EXPECT_EQ((Rgba{255, 99, 68, 40}), rig.node->GetColor());
    for (const char* code : {"Digit1", "KeyA", "KeyC", "Backspace", "KeyB", "Numpad3", "KeyD"}) rig.Stroke(code);
    EXPECT_EQ((Rgba{255, 99, 68, 40}), rig.node->GetColor()) << "five digits are no colour yet";
    rig.Stroke("Digit4");
    EXPECT_EQ((Rgba{0x1A, 0xB3, 0xD4, 40}), rig.node->GetColor());
    rig.Compose();
    EXPECT_GE(rig.Reports(), 1U);
}
