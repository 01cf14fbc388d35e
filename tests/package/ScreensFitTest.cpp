// The package's screens in every language and on every size of phone, measured from the layouts and the real text
// metrics.

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <functional>
#include <iterator>
#include <regex>
#include <set>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

#include "backend/headless/HeadlessBackend.h"
#include "runtime/package/Package.h"
#include "runtime/screen/controls/Contrast.h"
#include "support/TemporaryFolder.h"

using host::ControlKind;
using host::LayoutControl;

namespace {

constexpr const char* kLayouts[] = {"IDF_FORM", "IDF_FORM_SPLASH", "IDF_FORM_SETUP", "IDP_POPUP_COLOR",
                                    "IDP_POPUP_HELP"};
constexpr const char* kLanguages[] = {"en", "de", "fr", "es", "pt", "ko", "ja"};
constexpr host::PixelSize kScreens[] = {{480, 800}, {720, 1280}, {1080, 1920}, {1080, 2400},
                                        {240, 320}, {1280, 720}, {1536, 2048}};

// The pixels of a design unit where nothing is stretched.
double UnitOf(host::PixelSize screen) {
    return std::min(screen.width / 720.0, screen.height / 1280.0);
}

bool IsTouched(const LayoutControl& control) {
    // The help page's title is a button in name only: nothing listens to it.
    return control.takesTouches && control.name != "IDC_BUTTON_TITLE" &&
           (control.kind == ControlKind::kButton || control.kind == ControlKind::kCheckButton ||
            control.kind == ControlKind::kColorPicker);
}

const LayoutControl& Child(const LayoutControl& parent, const std::string& name) {
    const auto found = std::find_if(parent.children.begin(), parent.children.end(),
                                    [&](const LayoutControl& control) { return control.name == name; });
    if (found == parent.children.end()) throw std::out_of_range(name);
    return *found;
}

class ScreensFit : public testing::Test {
protected:
    host::Package Load(const std::string& language, host::PixelSize screen = {720, 1280}) {
        host::Package package;
        const host::BackendParts parts = backend_->Parts();
        EXPECT_EQ(std::vector<std::string>(), package.Load(parts.storage, parts.painter, language, screen, console_));
        return package;
    }
    // Runs `check` on every layout in every language on every phone.
    void ForEachScreen(const std::function<void(const LayoutControl& root, host::PixelSize screen)>& check) {
        for (const char* language : kLanguages) {
            for (const host::PixelSize screen : kScreens) {
                const host::Package package = Load(language, screen);
                for (const char* name : kLayouts) {
                    SCOPED_TRACE(std::string(name) + " in " + language + " at " + std::to_string(screen.width));
                    const LayoutControl* root = package.FindLayout(name);
                    ASSERT_NE(nullptr, root);
                    check(*root, screen);
                }
            }
        }
    }

    TemporaryFolder data_;
    std::unique_ptr<host::Backend> backend_ = host::CreateHeadlessBackend({BREVANT_PACKAGE, data_.Path()});
    host::Console console_;
};

}  // namespace

TEST_F(ScreensFit, NoTextIsCutOff) {
    ForEachScreen([this](const LayoutControl& root, host::PixelSize) {
        for (const LayoutControl& control : root.children) {
            if (control.text.text.empty()) continue;
            host::TextStyle style;
            style.size = control.text.smallestSize;
            style.weight = control.text.weight;
            style.wrap = control.text.wrap;
            style.maxWidth = control.bounds.width - 2 * control.box.borderWidth;
            style.maxHeight = control.bounds.height - 2 * control.box.borderWidth;
            // Beside a switch's text lies the switch, which is at most twice as wide as high.
            if (control.kind == ControlKind::kCheckButton) style.maxWidth -= 2 * control.bounds.height;
            const auto text = backend_->Parts().painter.CreateText(control.text.text, style, 1);
            EXPECT_FALSE(text->IsEllipsized()) << control.name << ": " << control.text.text;
            EXPECT_LE(text->Measure().height, style.maxHeight + 0.5) << control.name;
        }
    });
}

TEST_F(ScreensFit, TheHelpPagesParagraphsAreOfOneSizeWithEvenGaps) {
    constexpr double kUnevenness = 10;  // units, about a third of a line
    ForEachScreen([this](const LayoutControl& root, host::PixelSize screen) {
        if (root.name != "IDP_POPUP_HELP") return;
        std::vector<double> gaps;
        double bottom = 0;
        for (const char* name : {"IDC_DECOR_METER1", "IDC_DECOR_AUTO1", "IDC_DECOR_MENU1", "IDC_DECOR_KEYS1"}) {
            const auto& [text, bounds] = std::tie(Child(root, name).text, Child(root, name).bounds);
            const host::TextStyle style{
                .size = text.size, .wrap = text.wrap, .maxWidth = static_cast<double>(bounds.width)};
            const double height = backend_->Parts().painter.CreateText(text.text, style, 1)->Measure().height;
            EXPECT_LE(height, bounds.height + 0.5) << name;
            if (bottom > 0) gaps.push_back(bounds.y - bottom);
            bottom = bounds.y + height;
        }
        const auto [least, most] = std::minmax_element(gaps.begin(), gaps.end());
        EXPECT_LE(*most - *least, kUnevenness * UnitOf(screen) + 1);
    });
}

TEST_F(ScreensFit, NothingOverlapsOrLeavesItsScreenAndEveryTouchTargetIsLargeEnough) {
    constexpr double kLeastTarget = 72;  // units, 48 pixels of the smallest usual phone
    ForEachScreen([](const LayoutControl& root, host::PixelSize screen) {
        const host::PixelRect whole{0, 0, root.bounds.width, root.bounds.height};
        EXPECT_TRUE((host::PixelRect{0, 0, screen.width, screen.height}).Contains(root.bounds));
        for (std::size_t i = 0; i < root.children.size(); ++i) {
            const LayoutControl& control = root.children[i];
            EXPECT_TRUE(whole.Contains(control.bounds)) << control.name;
            if (IsTouched(control)) {
                EXPECT_GE(std::min(control.bounds.width, control.bounds.height), kLeastTarget * UnitOf(screen) - 0.5)
                    << control.name;
            }
            for (std::size_t j = 0; j < i; ++j) {
                const LayoutControl& other = root.children[j];
                const bool areTexts = !control.text.text.empty() && !other.text.text.empty();
                if (!areTexts && !(IsTouched(control) && IsTouched(other))) continue;
                EXPECT_TRUE(control.bounds.Intersection(other.bounds).IsEmpty())
                    << control.name << " and " << other.name;
            }
        }
    });
}

TEST_F(ScreensFit, NothingButTheHolesIsTouchedWhereThePhoneTakesGesturesForItself) {
    constexpr double kGestures = 24;  // units from the screen's left and right side
    ForEachScreen([](const LayoutControl& root, host::PixelSize screen) {
        for (const LayoutControl& control : root.children) {
            if (!IsTouched(control)) continue;
            const double left = root.bounds.x + control.bounds.x;
            EXPECT_GE(left, kGestures * UnitOf(screen) - 1) << control.name;
            EXPECT_LE(left + control.bounds.width, screen.width - kGestures * UnitOf(screen) + 1) << control.name;
        }
    });
}

TEST_F(ScreensFit, TheHolesLieEvenlyAndTheirWellsAroundThem) {
    constexpr double kCovered = 1.3;
    constexpr double kGestures = 24;
    ForEachScreen([](const LayoutControl& root, host::PixelSize screen) {
        if (root.name != "IDF_FORM") return;
        const LayoutControl& panel = Child(root, "IDC_PANEL_HOLE");
        const LayoutControl& wells = Child(root, "IDC_DECOR_WELLS");
        EXPECT_EQ(panel.bounds, wells.bounds);
        std::vector<host::PixelRect> holes;
        for (int i = 1; i <= 4; ++i) {
            holes.push_back(Child(panel, "IDC_LABEL_HOLE" + std::to_string(i)).bounds);
            const host::PixelRect well = Child(wells, "IDC_DECOR_WELL" + std::to_string(i)).bounds;
            const host::PixelRect hole = holes.back();
            EXPECT_EQ(hole.width, hole.height);
            EXPECT_NEAR(hole.x + hole.width / 2.0, well.x + well.width / 2.0, 1);
            EXPECT_NEAR(hole.y + hole.height / 2.0, well.y + well.height / 2.0, 1);
            EXPECT_GT(well.width, hole.width * kCovered);
        }
        const double covered = holes[0].width * kCovered;
        const double across = holes[1].x - holes[0].x - covered;
        const double down = holes[2].y - holes[0].y - covered;
        EXPECT_GT(down, kGestures * UnitOf(screen));
        EXPECT_GE(across, down - 2);
        EXPECT_GE(holes[0].x + holes[0].width / 2.0 - covered / 2, kGestures * UnitOf(screen));
        if (screen.height > screen.width) {
            EXPECT_NEAR(across, down, 2);
        }
        // As large as the quadrant allows.
        const int quadrant = std::min(panel.bounds.width, panel.bounds.height) / 2;
        EXPECT_GE(covered, 0.8 * quadrant);
    });
}

TEST_F(ScreensFit, WhatIsSwitchedOffCanStillBeSeen) {
    constexpr double kLeastContrast = 3;  // guideline 1.4.11 of the W3C
    constexpr host::Rgba kCard{255, 255, 255, 255};
    int switches = 0;
    ForEachScreen([&](const LayoutControl& root, host::PixelSize) {
        for (const LayoutControl& control : root.children) {
            if (control.kind != ControlKind::kCheckButton) continue;
            ++switches;
            EXPECT_GE(host::ContrastRatio(control.box.background, kCard), kLeastContrast) << control.name;
            EXPECT_GE(host::ContrastRatio(control.checkedColor, kCard), kLeastContrast) << control.name;
        }
    });
    EXPECT_GT(switches, 0);
}

TEST_F(ScreensFit, TheHostsOwnNoticesFitTheirPlate) {
    // The plate's inside and its smallest text, in units.
    constexpr double kWidth = 618;
    constexpr double kHeight = 122;
    constexpr double kSmallestText = 20;
    for (const char* language : kLanguages) {
        const host::Package package = Load(language);
        for (const char* id : {"IDS_NOTICE_KEYS", "IDS_NOTICE_SILENCE", "IDS_NOTICE_NO_MICROPHONE",
                               "IDS_NOTICE_NO_SPEAKER", "IDS_NOTICE_VOLUME", "IDS_NOTICE_NOT_RECORDED"}) {
            const std::string* text = package.FindString(id);
            ASSERT_NE(nullptr, text) << id;
            const host::TextStyle style{
                .size = kSmallestText, .wrap = host::TextWrap::kWords, .maxWidth = kWidth, .maxHeight = kHeight};
            const auto shaped = backend_->Parts().painter.CreateText(*text, style, 1);
            EXPECT_FALSE(shaped->IsEllipsized()) << language << ' ' << id;
            EXPECT_LE(shaped->Measure().height, kHeight) << language << ' ' << id;
        }
    }
}

TEST_F(ScreensFit, EveryLanguageNamesItsNotes) {
    struct Case {
        const char* language;
        std::vector<const char*> names;  ///< A, B and C of the lowest seventh, from semitone 9 of octave 3
    };
    const Case cases[] = {{"en", {"A₃", "B₃", "C₄", "C♯₄"}},     {"de", {"a", "h", "c′", "cis′"}},
                          {"fr", {"la₂", "si₂", "do₃", "do♯₃"}}, {"es", {"la₃", "si₃", "do₄", "do♯₄"}},
                          {"pt", {"lá₂", "si₂", "dó₃", "dó♯₃"}}, {"ko", {"라₃", "시₃", "도₄", "도♯₄"}},
                          {"ja", {"ラ₃", "シ₃", "ド₄", "ド♯₄"}}};
    for (const Case& each : cases) {
        const host::Package package = Load(each.language);
        const LayoutControl& help = *package.FindLayout("IDP_POPUP_HELP");
        for (std::size_t i = 0; i < each.names.size(); ++i) {
            EXPECT_EQ(each.names[i], Child(help, "IDC_DECOR_NOTE" + std::to_string(i + 2)).text.text) << each.language;
        }
    }
}

TEST_F(ScreensFit, EveryLanguageHasEveryText) {
    const auto idsOf = [](const std::string& language) {
        std::ifstream file(BREVANT_PACKAGE "strings/" + language + ".xml");
        const std::string text(std::istreambuf_iterator<char>(file), {});
        const std::regex id("id=\"([^\"]+)\"");
        std::set<std::string> ids;
        for (std::sregex_iterator each(text.begin(), text.end(), id); each != std::sregex_iterator(); ++each) {
            ids.insert(each->str(1));
        }
        return ids;
    };
    EXPECT_GT(idsOf("en").size(), 12U);
    for (const char* language : kLanguages) EXPECT_EQ(idsOf("en"), idsOf(language)) << language;
}
