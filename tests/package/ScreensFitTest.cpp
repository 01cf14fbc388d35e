// The package's screens in every language and on every size of phone, measured from the layouts and the real text
// metrics.

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "backend/headless/HeadlessBackend.h"
#include "runtime/package/Package.h"
#include "support/TemporaryFolder.h"

using host::ControlKind;
using host::LayoutControl;

namespace {

constexpr const char* kLayouts[] = {"IDF_FORM", "IDF_FORM_SPLASH", "IDF_FORM_SETUP", "IDP_POPUP_COLOR",
                                    "IDP_POPUP_HELP"};
constexpr const char* kLanguages[] = {"en", "de", "fr", "es", "pt", "ko", "ja"};
constexpr host::PixelSize kScreens[] = {{480, 800}, {720, 1280}, {1080, 1920}};

bool IsTouched(const LayoutControl& control) {
    // The help page's title is a button in name only: nothing listens to it.
    return control.takesTouches && control.name != "IDC_BUTTON_TITLE" &&
           (control.kind == ControlKind::kButton || control.kind == ControlKind::kCheckButton ||
            control.kind == ControlKind::kColorPicker);
}

class ScreensFit : public testing::Test {
protected:
    // Runs `check` on every layout in every language on every phone.
    void ForEachScreen(const std::function<void(const LayoutControl& root, host::PixelSize screen)>& check) {
        for (const char* language : kLanguages) {
            for (const host::PixelSize screen : kScreens) {
                host::Package package;
                std::string problem;
                ASSERT_TRUE(
                    package.Load(backend_->GetStorage(), backend_->GetPainter(), language, screen, console_, problem))
                    << problem;
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
            const auto text = backend_->GetPainter().CreateText(control.text.text, style, 1);
            EXPECT_FALSE(text->IsEllipsized()) << control.name << ": " << control.text.text;
            EXPECT_LE(text->Measure().height, style.maxHeight + 0.5) << control.name;
        }
    });
}

TEST_F(ScreensFit, NothingOverlapsOrLeavesItsScreenAndEveryTouchTargetIsLargeEnough) {
    constexpr double kLeastTarget = 48.0 / 480;  // of the screen's width
    ForEachScreen([](const LayoutControl& root, host::PixelSize screen) {
        const host::PixelRect whole{0, 0, root.bounds.width, root.bounds.height};
        EXPECT_TRUE((host::PixelRect{0, 0, screen.width, screen.height}).Contains(root.bounds));
        for (std::size_t i = 0; i < root.children.size(); ++i) {
            const LayoutControl& control = root.children[i];
            EXPECT_TRUE(whole.Contains(control.bounds)) << control.name;
            if (IsTouched(control)) {
                EXPECT_GE(std::min(control.bounds.width, control.bounds.height), kLeastTarget * screen.width)
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

TEST_F(ScreensFit, EveryLanguageHasEveryText) {
    const auto idsOf = [](const std::string& language) {
        std::vector<std::string> ids;
        std::ifstream file(BREVANT_PACKAGE "strings/" + language + ".xml");
        const std::string mark = "id=\"";
        for (std::string line; std::getline(file, line);) {
            for (std::size_t at = line.find(mark); at != std::string::npos; at = line.find(mark, at + 1)) {
                const std::size_t begin = at + mark.size();
                ids.push_back(line.substr(begin, line.find('"', begin) - begin));
            }
        }
        std::sort(ids.begin(), ids.end());
        return ids;
    };
    const auto english = idsOf("en");
    for (const char* id :
         {"IDS_SETTING", "IDS_AUTO_PLAY0", "IDS_AUTO_PLAY1", "IDS_AUTO_PLAY2", "IDS_BACK_COLOR0", "IDS_BACK_COLOR1",
          "IDS_HOLE_COLOR0", "IDS_HOLE_COLOR1", "IDS_COLOR", "IDS_HOLE_COLOR", "IDS_BACK_COLOR", "IDS_HELP"}) {
        EXPECT_TRUE(std::binary_search(english.begin(), english.end(), id)) << id;
    }
    for (const char* language : kLanguages) EXPECT_EQ(english, idsOf(language)) << language;
}
