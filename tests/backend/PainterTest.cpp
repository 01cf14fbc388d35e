#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "backend/cairo/CairoPainter.h"
#include "backend/cairo/CairoPicture.h"
#include "png/PngPicture.h"
#include "png/PngWriter.h"
#include "support/Pixels.h"

namespace {

using namespace host;

constexpr Rgba kWhite{255, 255, 255, 255};
constexpr Rgba kBlack{0, 0, 0, 255};
constexpr Rgba kRed{255, 0, 0, 255};
constexpr Rgba kNothing{};

/// Channel by channel, as rounding may differ by one or two.
testing::AssertionResult IsNear(Rgba actual, Rgba expected, int tolerance = 2) {
    const int worst = std::max({std::abs(actual.red - expected.red), std::abs(actual.green - expected.green),
                                std::abs(actual.blue - expected.blue), std::abs(actual.alpha - expected.alpha)});
    if (worst <= tolerance) return testing::AssertionSuccess();
    return testing::AssertionFailure() << "is " << +actual.red << ',' << +actual.green << ',' << +actual.blue << ','
                                       << +actual.alpha;
}

/// The smallest rectangle around everything that is not transparent.
PixelRect DrawnExtent(const Surface& surface) {
    PixelRect extent;
    for (int y = 0; y < surface.Size().height; ++y) {
        for (int x = 0; x < surface.Size().width; ++x) {
            if (PixelAt(surface, x, y).alpha != 0) extent = extent.Union({x, y, 1, 1});
        }
    }
    return extent;
}

/// How many whole pixels' worth is covered.
double Coverage(const Surface& surface) {
    double sum = 0;
    for (int y = 0; y < surface.Size().height; ++y) {
        for (int x = 0; x < surface.Size().width; ++x) sum += PixelAt(surface, x, y).alpha / 255.0;
    }
    return sum;
}

class PainterTest : public ::testing::Test {
protected:
    [[nodiscard]] std::unique_ptr<Surface> Make(int side, double scale = 1) {
        return painter_.CreateSurface({side, side}, scale);
    }
    [[nodiscard]] std::shared_ptr<const Picture> MakePicture(PixelSize size, Rgba (*at)(int x, int y)) {
        Image image{size, {}};
        for (int y = 0; y < size.height; ++y) {
            for (int x = 0; x < size.width; ++x) image.pixels.push_back(at(x, y));
        }
        return painter_.CreatePicture(image);
    }

    CairoPainter painter_;
};

TEST_F(PainterTest, FillsShapesToTheirEdgesAndNoFurther) {
    const RectF rect{10, 20, 60, 40};
    constexpr double kPi = 3.14159265;
    const struct {
        const char* shape;
        std::function<void(Surface&)> draw;
        PixelRect extent;
        double area;
        Rgba corner;
    } cases[] = {
        {"rectangle", [&](Surface& s) { s.FillRectangle(rect, kRed); }, {10, 20, 60, 40}, 2400, kRed},
        {"half a pixel",
         [&](Surface& s) {
             s.FillRectangle({10.5, 20, 59.5, 40}, kRed);
         },
         {10, 20, 60, 40},
         2380,
         {255, 0, 0, 128}},
        {"ellipse", [&](Surface& s) { s.FillEllipse(rect, kRed); }, {10, 20, 60, 40}, kPi * 30 * 20, kNothing},
        {"round rectangle",
         [&](Surface& s) { s.FillRoundRectangle(rect, 20, 10, kRed); },
         {10, 20, 60, 40},
         2400 - (4 - kPi) * 10 * 5,
         kNothing},
        {"rounder than itself",
         [&](Surface& s) { s.FillRoundRectangle(rect, 100, 100, kRed); },
         {10, 20, 60, 40},
         kPi * 30 * 20,
         kNothing},
        {"square corners", [&](Surface& s) { s.FillRoundRectangle(rect, 0, 10, kRed); }, {10, 20, 60, 40}, 2400, kRed},
        {"stroke", [&](Surface& s) { s.StrokeRectangle(rect, 4, kRed); }, {8, 18, 64, 44}, 64 * 44 - 56 * 36, kRed},
        {"ellipse's line",
         [&](Surface& s) { s.StrokeEllipse(rect, 2, kRed); },
         {9, 19, 62, 42},
         kPi * (31 * 21 - 29 * 19),
         kNothing},
        {"empty",
         [&](Surface& s) {
             s.FillEllipse({10, 20, 0, 40}, kRed);
         },
         {},
         0,
         kNothing},
    };
    for (const auto& row : cases) {
        const auto surface = Make(100);
        row.draw(*surface);
        EXPECT_EQ(DrawnExtent(*surface), row.extent) << row.shape;
        EXPECT_NEAR(Coverage(*surface), row.area, row.area * 0.01) << row.shape;
        EXPECT_TRUE(IsNear(PixelAt(*surface, 10, 20), row.corner)) << row.shape;
    }
}

TEST_F(PainterTest, DrawsInUnitsOfTheScaleButClipsInPixels) {
    const auto surface = Make(100, 2);
    surface->SetClip({30, 20, 20, 60});
    surface->FillRectangle({10, 20, 10, 10}, kRed);
    EXPECT_EQ(DrawnExtent(*surface), (PixelRect{30, 40, 10, 20}));
    surface->SetClip({0, 0, 5, 5});  // It replaces the other one.
    surface->Clear(kWhite);
    EXPECT_EQ(PixelAt(*surface, 4, 4), kWhite);
    EXPECT_EQ(PixelAt(*surface, 5, 4), kNothing);
    EXPECT_EQ(PixelAt(*surface, 30, 40), kRed);
    surface->SetClip({10, 10, -5, 3});
    surface->Clear(kBlack);
    EXPECT_EQ(PixelAt(*surface, 4, 4), kWhite);
    surface->ResetClip();
    surface->Clear({255, 255, 255, 0});
    EXPECT_EQ(Coverage(*surface), 0);
    EXPECT_EQ(PixelAt(*surface, -1, 0), kNothing);
    EXPECT_EQ(PixelAt(*surface, 0, 100), kNothing);
}

TEST_F(PainterTest, BlendsByAlphaAndShadesFromTopToBottom) {
    const auto surface = Make(100);
    surface->Clear(kBlack);
    surface->FillRectangle({0, 0, 100, 100}, {255, 255, 255, 51});
    EXPECT_TRUE(IsNear(PixelAt(*surface, 50, 50), {51, 51, 51, 255}));
    surface->FillGradient({0, 0, 100, 100}, 0, 0, kWhite, kBlack);
    EXPECT_TRUE(IsNear(PixelAt(*surface, 3, 0), kWhite));
    EXPECT_TRUE(IsNear(PixelAt(*surface, 99, 50), {127, 127, 127, 255}));
    EXPECT_TRUE(IsNear(PixelAt(*surface, 50, 99), {1, 1, 1, 255}));
}

TEST_F(PainterTest, ComposesPixelForPixelOverOrInPlaceOfWhatIsThere) {
    const auto source = Make(10, 3);
    source->FillRectangle({0, 0, 1, 1}, {255, 255, 255, 128});
    for (const auto blend : {Surface::Blend::kOver, Surface::Blend::kReplace}) {
        const auto target = Make(30, 2);
        target->Clear(kRed);
        target->SetClip({0, 0, 30, 12});
        target->Compose(*source, 5, 8, blend);
        const bool isOver = blend == Surface::Blend::kOver;
        EXPECT_TRUE(IsNear(PixelAt(*target, 5, 8), isOver ? Rgba{255, 128, 128, 255} : Rgba{255, 255, 255, 128}));
        EXPECT_EQ(PixelAt(*target, 8, 8), isOver ? kRed : kNothing);
        EXPECT_EQ(PixelAt(*target, 5, 12), kRed);  // Outside of the clip.
        EXPECT_EQ(PixelAt(*target, 4, 8), kRed);   // Beside the source.
        EXPECT_EQ(PixelAt(*target, 15, 8), kRed);
    }
}

TEST_F(PainterTest, ShrinksPicturesByAreaAndEnlargesThemSmoothly) {
    const auto stripes = MakePicture({64, 64}, [](int x, int) { return x % 2 == 0 ? kWhite : kBlack; });
    const auto spot = MakePicture({90, 90}, [](int x, int y) { return x == 45 && y == 45 ? kRed : kNothing; });
    const auto halves = MakePicture({2, 1}, [](int x, int) { return x == 0 ? kBlack : kWhite; });
    const auto surface = Make(100, 0.5);
    surface->DrawPicture({0, 0, 2 * 23, 2 * 7}, *stripes);
    for (int x = 0; x < 23; ++x) {
        EXPECT_TRUE(IsNear(PixelAt(*surface, x, 3), {128, 128, 128, 255}, 40)) << x;
    }
    surface->Clear(kNothing);
    surface->DrawPicture({0, 0, 20, 20}, *spot);
    EXPECT_NEAR(Coverage(*surface), 1 / 81.0, 0.005);  // A pixel out of 9 by 9: faint, but not lost.
    surface->Clear(kNothing);
    surface->DrawPicture({20, 20, 80, 20}, *halves);
    EXPECT_EQ(DrawnExtent(*surface), (PixelRect{10, 10, 40, 10}));
    EXPECT_EQ(PixelAt(*surface, 10, 15), kBlack);
    EXPECT_EQ(PixelAt(*surface, 49, 15), kWhite);
    EXPECT_TRUE(IsNear(PixelAt(*surface, 30, 15), {130, 130, 130, 255}, 8));
}

TEST_F(PainterTest, DrawsAPictureTheSameAtEverySizeHoweverOftenSizesChange) {
    const auto picture = MakePicture({50, 50}, [](int x, int y) {
        return Rgba{static_cast<std::uint8_t>(x * 5), static_cast<std::uint8_t>(y * 5), 80, 255};
    });
    EXPECT_EQ(picture->Size(), (PixelSize{50, 50}));
    for (int round = 0; round < 2; ++round) {
        for (const int side : {50, 20, 70, 33, 90, 20}) {
            const auto surface = Make(100);
            surface->DrawPicture({3.4, 3.4, side + 0.05, side + 0.05}, *picture);
            ASSERT_EQ(DrawnExtent(*surface), (PixelRect{3, 3, side, side}));
            EXPECT_TRUE(IsNear(PixelAt(*surface, 3 + side / 2, 3 + side / 4), {125, 62, 80, 255}, 7)) << side;
        }
    }
    const auto huge = Make(100);
    huge->DrawPicture({-9000, -9000, 20'000, 20'000}, *picture);  // Too large to keep a copy of.
    EXPECT_TRUE(IsNear(PixelAt(*huge, 0, 0), {112, 112, 80, 255}, 5));
}

TEST_F(PainterTest, KeepsNoPictureThatItHasDrawn) {
    CairoSurfaceHandle image(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 4, 4));
    cairo_surface_t* const watched = cairo_surface_reference(image.get());
    const auto surface = Make(40);
    {
        const CairoPicture picture(std::move(image));
        surface->DrawPicture({0, 0, 4, 4}, picture);
        surface->DrawPicture({0, 0, 20'000, 20'000}, picture);
    }
    EXPECT_EQ(cairo_surface_get_reference_count(watched), 1U);
    cairo_surface_destroy(watched);
}

TEST_F(PainterTest, DecodesOnlyWholePictures) {
    const auto surface = Make(40);
    surface->FillEllipse({0, 0, 40, 40}, {200, 100, 50, 128});
    const std::vector<std::byte> whole = EncodePng(surface->Read({0, 0, 40, 40}));
    ASSERT_FALSE(whole.empty());
    const auto picture = painter_.DecodePicture(whole);
    ASSERT_NE(picture, nullptr);
    const auto copy = Make(40);
    copy->DrawPicture({0, 0, 40, 40}, *picture);
    EXPECT_TRUE(IsNear(PixelAt(*copy, 20, 20), {200, 100, 50, 128}));
    EXPECT_EQ(PixelAt(*copy, 0, 0), kNothing);

    for (std::size_t length = 0; length < whole.size(); ++length) {
        EXPECT_EQ(painter_.DecodePicture(std::span(whole).first(length)), nullptr) << length;
    }
    for (std::size_t at = 0; at < whole.size(); ++at) {
        std::vector<std::byte> garbage = whole;
        garbage[at] ^= std::byte{0x5a};
        EXPECT_EQ(painter_.DecodePicture(garbage), nullptr) << at;
    }
    EXPECT_EQ(painter_.CreatePicture({{2, 2}, std::vector<Rgba>(3)}), nullptr);
    EXPECT_EQ(painter_.CreatePicture({{0, 2}, {}}), nullptr);
}

TEST_F(PainterTest, RefusesPicturesThatPromiseMoreThanTheirFileHolds) {
    // A header that is right in itself, then a chunk of nearly 2 GiB of which nothing is there; and a picture of
    // 32767 squared in a file that is whole.
    const std::string signature("\x89PNG\r\n\x1a\n", 8);
    const std::string header("\0\0\0\x0dIHDR\0\0\0\1\0\0\0\1\x8\x6\0\0\0\x1f\x15\xc4\x89", 25);
    const std::string promise(
        "\x7f\xff\xff\xff"
        "tEXt",
        8);
    const std::string huge("\0\0\0\x0dIHDR\0\0\x7f\xff\0\0\x7f\xff\x8\x6\0\0\0\x49\xf2\x06\x3d", 25);
    const std::string end("\0\0\0\0IEND\xae\x42\x60\x82", 12);
    for (const std::string& file : {signature + header + promise, signature + huge + end, signature + header + end}) {
        EXPECT_EQ(painter_.DecodePicture(std::as_bytes(std::span(file))), nullptr);
    }
    const std::string bare = signature + header + end;
    EXPECT_EQ(PngPicture(std::as_bytes(std::span(bare))).Size(), (PixelSize{1, 1}));
}

TEST_F(PainterTest, BreaksOrCutsTextsAtTheGivenWidthAndHeight) {
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

TEST_F(PainterTest, DrawsTextsWhereTheyAreMeasuredInEveryScript) {
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

TEST_F(PainterTest, DrawsSharedCharactersAsTheLanguageWritesThem) {
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

TEST_F(PainterTest, SurroundsGlyphsWithTheirEdge) {
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

TEST_F(PainterTest, DrawsOnForeignPixelsInPlace) {
    std::vector<std::uint32_t> pixels(20 * 10, 0x00112233);
    const auto bytes = reinterpret_cast<unsigned char*>(pixels.data());
    const auto surface = painter_.WrapPixels(bytes, 16, 10, 20 * 4);
    ASSERT_NE(surface, nullptr);
    surface->FillRectangle({15, 9, 100, 100}, kRed);
    EXPECT_EQ(PixelAt(*surface, 14, 9), (Rgba{0x11, 0x22, 0x33, 255}));
    EXPECT_EQ(PixelAt(*surface, 15, 9), kRed);
    EXPECT_EQ(pixels[9 * 20 + 15] & 0xffffff, 0xff0000U);
    EXPECT_EQ(pixels[9 * 20 + 16], 0x00112233U);
    EXPECT_EQ(painter_.WrapPixels(bytes, 16, 10, 63), nullptr);
}

}  // namespace
