// The mix as a module of its own, which worklet.mjs runs where the browser asks for frames. One mix a module. Nothing
// but mix_prepare and mix_room takes memory, and neither runs where frames are asked for.

#include <emscripten.h>

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

#include "backend/mix/Mix.h"

namespace host {

namespace {

constexpr std::size_t kMostFrames = 4096;
constexpr std::size_t kMostNews = 256;
constexpr std::size_t kNumbersOfNews = 4;

class NewsList final : public MixReporter {
public:
    bool Report(const MixNews& news) noexcept override {
        if (count == kMostNews) return false;
        double* const at = &numbers[count++ * kNumbersOfNews];
        at[0] = static_cast<double>(news.kind);
        at[1] = news.voice;
        at[2] = news.clip;
        at[3] = news.number;
        return true;
    }

    std::size_t count = 0;
    std::array<double, kMostNews * kNumbersOfNews> numbers{};
};

Mix mix;
NewsList news;
std::array<float, kMostFrames> frames;
std::array<std::unique_ptr<float[]>, kMostClips> clips;

}  // namespace

extern "C" {

EMSCRIPTEN_KEEPALIVE void mix_prepare(int rate, int periodFrames) {
    mix.Prepare(rate, periodFrames);
}

/// Room for a clip's frames, which are written there before a command says that they are ready. Null for a number that
/// there is none of.
EMSCRIPTEN_KEEPALIVE float* mix_room(std::uint32_t number, std::uint32_t length, std::uint32_t loopStart,
                                     std::uint32_t takes, float releaseFrames, float periodFrames) {
    if (number >= kMostClips) return nullptr;
    const ClipShape shape{length, loopStart, takes, releaseFrames, periodFrames};
    clips[number] = std::make_unique<float[]>(shape.Frames());
    mix.SetClip(number, shape, clips[number].get());
    return clips[number].get();
}

EMSCRIPTEN_KEEPALIVE void mix_obey(int kind, std::uint32_t voice, std::uint32_t clip, std::uint32_t number,
                                   float gain) {
    mix.Obey({static_cast<MixCommand::Kind>(kind), voice, clip, number, gain}, news);
}

EMSCRIPTEN_KEEPALIVE void mix_render(std::uint32_t count) {
    mix.Render(std::span(frames).first(std::min<std::size_t>(count, kMostFrames)), news);
}

EMSCRIPTEN_KEEPALIVE float* mix_frames() {
    return frames.data();
}

/// Numbers of four each: kind, voice, clip, number.
EMSCRIPTEN_KEEPALIVE double* mix_news() {
    return news.numbers.data();
}

/// How many pieces of news there are; they are forgotten by this.
EMSCRIPTEN_KEEPALIVE std::uint32_t mix_take_news() {
    return static_cast<std::uint32_t>(std::exchange(news.count, 0));
}

}  // extern "C"

}  // namespace host
