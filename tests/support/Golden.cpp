#include "support/Golden.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <span>
#include <vector>

#include "backend/cairo/CairoPainter.h"

namespace {

namespace fs = std::filesystem;

// A channel may differ by so much anywhere, and beyond that in so few of the pixels.
constexpr int kQuietDifference = 24;
constexpr double kLoudShare = 0.002;

std::unique_ptr<host::Surface> ReadPicture(host::CairoPainter& painter, const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    const auto picture = painter.DecodePicture(std::as_bytes(std::span(bytes)));
    if (!picture) return nullptr;
    const host::PixelSize size = picture->Size();
    auto surface = painter.CreateSurface(size, 1);
    surface->DrawPicture({0, 0, static_cast<double>(size.width), static_cast<double>(size.height)}, *picture);
    return surface;
}

int Difference(host::Rgba a, host::Rgba b) {
    const auto channel = [](int left, int right) { return std::abs(left - right); };
    return std::max(
        {channel(a.red, b.red), channel(a.green, b.green), channel(a.blue, b.blue), channel(a.alpha, b.alpha)});
}

}  // namespace

void ExpectGolden(const std::string& picturePath, const std::string& name) {
    const std::string goldenPath = std::string(BREVANT_TEST_FILES) + "goldens/" + name + ".png";
    host::CairoPainter painter;
    const auto picture = ReadPicture(painter, picturePath);
    ASSERT_TRUE(picture) << picturePath << " is no picture";
    if (std::getenv("BREVANT_RENEW_GOLDENS") != nullptr) {
        fs::create_directories(fs::path(goldenPath).parent_path());
        fs::copy_file(picturePath, goldenPath, fs::copy_options::overwrite_existing);
        return;
    }
    const std::string kept = BREVANT_TEST_OUTPUT + name;
    const auto keep = [&] {
        fs::create_directories(fs::path(kept).parent_path());
        fs::copy_file(picturePath, kept + ".png", fs::copy_options::overwrite_existing);
    };
    const auto golden = ReadPicture(painter, goldenPath);
    if (!golden) {
        keep();
        FAIL() << "there is no golden picture " << goldenPath << "; the new one is " << kept << ".png";
    }
    const host::PixelSize size = golden->Size();
    ASSERT_EQ(size, picture->Size());
    const auto difference = painter.CreateSurface(size, 1);
    int loud = 0;
    for (int y = 0; y < size.height; ++y) {
        for (int x = 0; x < size.width; ++x) {
            if (Difference(golden->PixelAt(x, y), picture->PixelAt(x, y)) <= kQuietDifference) continue;
            ++loud;
            difference->FillRectangle({static_cast<double>(x), static_cast<double>(y), 1, 1}, {255, 0, 0, 255});
        }
    }
    if (loud > kLoudShare * size.width * size.height) {
        keep();
        EXPECT_TRUE(painter.WritePng(*difference, kept + "-difference.png"));
        ADD_FAILURE() << loud << " pixels differ; see " << kept << ".png and " << kept << "-difference.png";
    }
}
