#include "support/Golden.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <span>
#include <vector>

#include "backend/cairo/CairoPainter.h"
#include "png/PngWriter.h"

namespace {

namespace fs = std::filesystem;

// A channel may differ by so much anywhere, and beyond that in so few of the pixels.
constexpr int kQuietDifference = 24;
constexpr double kLoudShare = 0.002;

/// Without pixels when there is no such picture.
host::Image ReadPicture(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    host::CairoPainter painter;
    const auto picture = painter.DecodePicture(std::as_bytes(std::span(bytes)));
    if (!picture) return {};
    const auto [width, height] = picture->Size();
    const auto surface = painter.CreateSurface({width, height}, 1);
    surface->DrawPicture({0, 0, static_cast<double>(width), static_cast<double>(height)}, *picture);
    return surface->Read({0, 0, width, height});
}

int Difference(host::Rgba a, host::Rgba b) {
    const auto channel = [](int left, int right) { return std::abs(left - right); };
    return std::max(
        {channel(a.red, b.red), channel(a.green, b.green), channel(a.blue, b.blue), channel(a.alpha, b.alpha)});
}

}  // namespace

void ExpectGolden(const std::string& picturePath, const std::string& name) {
    const std::string goldenPath = std::string(BREVANT_TEST_FILES) + "goldens/" + name + ".png";
    const host::Image picture = ReadPicture(picturePath);
    ASSERT_FALSE(picture.pixels.empty()) << picturePath << " is no picture";
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
    const host::Image golden = ReadPicture(goldenPath);
    if (golden.pixels.empty()) {
        keep();
        FAIL() << "there is no golden picture " << goldenPath << "; the new one is " << kept << ".png";
    }
    ASSERT_EQ(golden.size, picture.size);
    host::Image difference{golden.size, std::vector<host::Rgba>(golden.pixels.size())};
    std::size_t loud = 0;
    for (std::size_t i = 0; i < golden.pixels.size(); ++i) {
        if (Difference(golden.pixels[i], picture.pixels[i]) <= kQuietDifference) continue;
        ++loud;
        difference.pixels[i] = {255, 0, 0, 255};
    }
    if (static_cast<double>(loud) > kLoudShare * static_cast<double>(golden.pixels.size())) {
        keep();
        const std::vector<std::byte> png = host::EncodePng(difference);
        std::ofstream(kept + "-difference.png", std::ios::binary)
            .write(reinterpret_cast<const char*>(png.data()), static_cast<std::streamsize>(png.size()));
        ADD_FAILURE() << loud << " pixels differ; see " << kept << ".png and " << kept << "-difference.png";
    }
}
