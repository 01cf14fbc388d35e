#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "backend/cairo/CairoPainter.h"
#include "support/Pixels.h"
#include "text/LineBreaking.h"

namespace {

using namespace host;

constexpr Rgba kWhite{255, 255, 255, 255};
constexpr Rgba kRed{255, 0, 0, 255};
constexpr Rgba kNothing{};

class TextTest : public ::testing::Test {
protected:
    [[nodiscard]] std::unique_ptr<Surface> Make(int side) { return painter_.CreateSurface({side, side}, 1); }
    [[nodiscard]] double WidthOf(const std::string& text, double size) {
        return painter_.CreateText(text, TextStyle{.size = size}, 1)->Measure().width;
    }

    CairoPainter painter_;
};

TEST_F(TextTest, BreaksOrCutsTextsAtTheGivenWidthAndHeight) {
    const std::string words = "Blow softly into the microphone and cover the holes";
    TextStyle style;
    style.size = 30;
    const auto free = painter_.CreateText(words, style, 1);
    const double line = free->Measure().height;
    const double width = free->Measure().width;
    EXPECT_FALSE(free->IsEllipsized());
    EXPECT_GT(line, 30);
    EXPECT_LT(line, 60);
    const struct {
        const char* what;
        TextWrap wrap;
        double maxWidth;
        double maxHeight;
        int lines;
        bool isEllipsized;
    } cases[] = {
        {"one line that fits", TextWrap::kOneLine, width, 0, 1, false},
        {"one line cut", TextWrap::kOneLine, 200, 0, 1, true},
        {"broken", TextWrap::kWords, width * 0.7, 0, 2, false},
        {"broken and cut", TextWrap::kWords, 200, line * 2, 2, true},
        {"unbroken", TextWrap::kWords, 0, 0, 1, false},
        {"lower than a line", TextWrap::kWords, 200, 5, 1, true},
    };
    for (const auto& row : cases) {
        style.wrap = row.wrap;
        style.maxWidth = row.maxWidth;
        style.maxHeight = row.maxHeight;
        const auto text = painter_.CreateText(words, style, 1);
        EXPECT_NEAR(text->Measure().height, line * row.lines, 1) << row.what;
        EXPECT_EQ(text->IsEllipsized(), row.isEllipsized) << row.what;
        EXPECT_LE(text->Measure().width, row.maxWidth > 0 ? row.maxWidth : width) << row.what;
    }
    // What a window of another scale shows has the same place in the control's own units, but for whole pixels.
    const auto doubled = painter_.CreateText(words, TextStyle{.size = 30}, 2);
    EXPECT_NEAR(doubled->Measure().width, width, width * 0.02);
    EXPECT_EQ(painter_.CreateText("two\nlines", TextStyle{.size = 30}, 1)->Measure().height, line);
}

TEST_F(TextTest, DrawsTextsWhereTheyAreMeasuredInEveryScript) {
    for (const char* const words : {"Hole colour", "穴の色", "구멍 색", "Grüße", "\xff\xfe not UTF-8", "a\nb"}) {
        for (const auto align : {HorizontalAlign::kLeft, HorizontalAlign::kCenter, HorizontalAlign::kRight}) {
            const TextStyle style{.size = 20, .align = align, .wrap = TextWrap::kWords, .maxWidth = 180};
            const auto text = painter_.CreateText(words, style, 1);
            const SizeF size = text->Measure();
            ASSERT_GT(size.width, 0);
            const auto surface = Make(200);
            surface->DrawText(*text, {10, 10}, kRed);
            const PixelRect box{9, 9, static_cast<int>(size.width) + 4, static_cast<int>(size.height) + 4};
            const PixelRect extent = DrawnExtent(*surface);
            EXPECT_FALSE(extent.IsEmpty()) << words;
            EXPECT_TRUE(box.Contains(extent)) << words;
        }
    }
}

TEST_F(TextTest, DrawsSharedCharactersAsTheLanguageWritesThem) {
    const auto draw = [&](const char* language) {
        painter_.SetLanguage(language);
        const auto surface = Make(60);
        surface->DrawText(*painter_.CreateText("骨", TextStyle{.size = 40}, 1), {0, 0}, kRed);
        std::vector<int> alphas;
        for (int y = 0; y < 60; ++y) {
            for (int x = 0; x < 60; ++x) alphas.push_back(PixelAt(*surface, x, y).alpha);
        }
        return alphas;
    };
    const auto japanese = draw("ja");
    EXPECT_NE(draw("zh-cn"), japanese);  // The inner corner of the upper part is on the other side.
    EXPECT_EQ(draw("ja"), japanese);
}

TEST_F(TextTest, SurroundsGlyphsWithTheirEdge) {
    const auto text = painter_.CreateText("Help", TextStyle{.size = 40, .weight = FontWeight::kBold}, 1);
    const auto plain = Make(200);
    const auto edged = Make(200);
    plain->DrawText(*text, {20, 20}, kWhite);
    for (int i = 0; i < 2; ++i) {  // The second time from what the first has kept.
        edged->Clear(kNothing);
        edged->DrawTextWithEdge(*text, {20, 20}, kWhite, 3, kRed);
    }
    const PixelRect inner = DrawnExtent(*plain);
    const PixelRect outer = DrawnExtent(*edged);
    EXPECT_NEAR(inner.x - outer.x, 3, 1);
    EXPECT_NEAR(outer.x + outer.width - inner.x - inner.width, 3, 1);
    EXPECT_NEAR(inner.y - outer.y, 3, 1);
    const int middle = inner.y + inner.height / 2;
    EXPECT_TRUE(IsNear(PixelAt(*edged, inner.x - 2, middle), kRed, 20));
    EXPECT_TRUE(IsNear(PixelAt(*edged, inner.x + 3, middle), kWhite, 20));
}

TEST_F(TextTest, KeepsKoreanWordsWholeWhereALineCanHoldThem) {
    const std::string words = "마이크에 부드럽게 바람을 불면서 구멍을 손가락으로 막으세요";
    constexpr double kSize = 30;
    const double line = painter_.CreateText(words, TextStyle{.size = kSize}, 1)->Measure().height;
    for (double width = WidthOf("손가락으로", kSize) + 1; width < 900; width += 13) {
        // As a person would: the next word goes to the next line when the line would be wider with it.
        int lines = 1;
        std::string present;
        std::istringstream rest(words);
        for (std::string word; rest >> word;) {
            const std::string longer = present.empty() ? word : present + ' ' + word;
            const bool fits = WidthOf(longer, kSize) <= width;
            lines += fits ? 0 : 1;
            present = fits ? longer : word;
        }
        const auto text =
            painter_.CreateText(words, TextStyle{.size = kSize, .wrap = TextWrap::kWords, .maxWidth = width}, 1);
        EXPECT_NEAR(text->Measure().height, line * lines, 1) << width;
    }
    const double narrow = WidthOf("손가락", kSize);
    const auto broken =
        painter_.CreateText(words, TextStyle{.size = kSize, .wrap = TextWrap::kWords, .maxWidth = narrow}, 1);
    EXPECT_LE(broken->Measure().width, narrow);
    EXPECT_GT(broken->Measure().height, line * 7.5) << "seven words, of which some take two lines";
}

TEST_F(TextTest, LeavesNoSyllableAloneOnTheLastLine) {
    constexpr double kSize = 20;
    for (const std::string words : {"穴をふさいでいる間、音が鳴ります。", "運指を覚えましょう", "소리가 날 수"}) {
        for (double width = 4 * kSize; width < 17 * kSize; width += 3) {
            const auto text =
                painter_.CreateText(words, TextStyle{.size = kSize, .wrap = TextWrap::kWords, .maxWidth = width}, 1);
            const auto surface = Make(400);
            surface->DrawText(*text, {0, 0}, kRed);
            const double line = painter_.CreateText(words, TextStyle{.size = kSize}, 1)->Measure().height;
            const int last = static_cast<int>(text->Measure().height - line + 1);
            surface->SetClip({0, 0, 400, last});
            surface->Clear(kNothing);
            EXPECT_GT(DrawnExtent(*surface).width, kSize * 1.2) << words << ' ' << width;
        }
    }
}

TEST(LineBreaking, SaysWhereNoLineMayBeBroken) {
    const struct {
        const char* text;
        std::vector<std::string> whole;
    } cases[] = {
        {"", {}},
        {"Cover the holes.", {}},
        {"구멍 C5 색", {"구멍", "색"}},
        {"구멍을 막으세요. 또\n색", {"구멍을", "막으세요. 또", "색"}},
        {"「C5」구멍을, 색", {"「C5」구멍을, 색"}},
        {"音が鳴ります。", {"ます。"}},
        {"鳴ります。 Back", {}},
    };
    for (const auto& row : cases) {
        const std::string text = row.text;
        std::vector<std::string> whole;
        for (const TextRange& range : UnbreakableRanges(text)) {
            whole.push_back(text.substr(range.begin, range.end - range.begin));
        }
        EXPECT_EQ(whole, row.whole) << text;
    }
}

}  // namespace
