#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
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
    for (const std::string name : {"promised-chunk", "promised-size", "no-rows"}) {
        std::ifstream file(BREVANT_TEST_FILES "fuzz/corpus/png/" + name + ".png", std::ios::binary);
        const std::string content(std::istreambuf_iterator<char>(file), {});
        const auto bytes = std::as_bytes(std::span(content));
        ASSERT_FALSE(bytes.empty()) << name;
        EXPECT_EQ(PngPicture(bytes).Size(), (name == "no-rows" ? PixelSize{64, 64} : PixelSize{})) << name;
        EXPECT_EQ(painter_.DecodePicture(bytes), nullptr) << name;
    }
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
