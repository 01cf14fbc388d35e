#include "runtime/window/PlaceKeeper.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

namespace host {

namespace {

constexpr std::size_t kLargestFile = 200;
// What a desktop may reasonably have; beyond it the file is not one of ours.
constexpr int kFarthest = 100'000;

// "720x1280 at 100,50 size 576x1024": the phone's screen, then the window's place.
constexpr std::array<std::string_view, 6> kBefore{"", "x", " at ", ",", " size ", "x"};
using Numbers = std::array<int, kBefore.size()>;

std::optional<Numbers> Parse(std::string_view text) {
    Numbers numbers{};
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        if (text.substr(0, kBefore[i].size()) != kBefore[i]) return std::nullopt;
        text.remove_prefix(kBefore[i].size());
        const auto read = std::from_chars(text.data(), text.data() + text.size(), numbers[i]);
        if (read.ec != std::errc() || numbers[i] < -kFarthest || numbers[i] > kFarthest) return std::nullopt;
        text.remove_prefix(static_cast<std::size_t>(read.ptr - text.data()));
    }
    return text == "\n" ? std::optional(numbers) : std::nullopt;
}

std::string Format(const Numbers& numbers) {
    std::string text;
    for (std::size_t i = 0; i < numbers.size(); ++i) text += std::string(kBefore[i]) + std::to_string(numbers[i]);
    return text + '\n';
}

}  // namespace

PlaceKeeper::PlaceKeeper(Storage& storage, Window& window, PixelSize phoneScreen)
    : storage_(storage), window_(window), phoneScreen_(phoneScreen) {}

std::string PlaceKeeper::Path() const {
    return storage_.DataRoot() + "window";
}

void PlaceKeeper::Restore() {
    std::vector<std::byte> content;
    if (storage_.DataRoot().empty() || storage_.Read(Path(), kLargestFile, content) != ReadOutcome::kRead) return;
    const auto numbers = Parse({reinterpret_cast<const char*>(content.data()), content.size()});
    if (!numbers) return;
    const auto [screenWidth, screenHeight, x, y, width, height] = *numbers;
    if (PixelSize{screenWidth, screenHeight} != phoneScreen_ || width <= 0 || height <= 0) return;
    remembered_ = WindowPlace{x, y, width, height};
    window_.SetPlace(*remembered_);
}

void PlaceKeeper::Save() {
    const auto place = window_.Place();
    if (!place || place == remembered_ || storage_.DataRoot().empty()) return;
    const std::string text =
        Format({phoneScreen_.width, phoneScreen_.height, place->x, place->y, place->width, place->height});
    if (storage_.Replace(Path(), std::as_bytes(std::span(text)))) remembered_ = place;
}

}  // namespace host
