// A recording of any bytes becomes a clip or does not open, and one that breaks off stays what it was.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "Require.h"
#include "runtime/sound/ClipDecoder.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr int kRate = 48000;
    constexpr std::size_t kLongestFrames = std::size_t{61} * kRate;
    constexpr std::size_t kSlice = 7200;
    const auto* bytes = reinterpret_cast<const std::byte*>(data);
    const auto decoder = host::ClipDecoder::Open(std::vector<std::byte>(bytes, bytes + size), kRate);
    if (decoder == nullptr) return 0;
    const auto clip = decoder->GetClip();
    Require(clip->Length() > 0 && clip->Shape().Frames() <= 4 * kLongestFrames, "a clip is bounded");
    while (!decoder->IsDone()) {
        const std::size_t ready = clip->Ready();
        if (!decoder->Advance(kSlice)) break;
        Require(clip->Ready() > ready && clip->Ready() <= clip->Length(), "each step makes some of the clip");
    }
    for (std::size_t i = 0; i < clip->Ready(); ++i) Require(std::isfinite(clip->Frames()[i]), "a sample is a number");
    return 0;
}
