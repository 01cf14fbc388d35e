#include "runtime/soundfile/Framing.h"

#include <array>

#include "runtime/soundfile/OggFraming.h"

namespace host {

namespace {

std::uint32_t LittleEndian32(const std::byte* at) {
    constexpr unsigned kBitsOfByte = 8;
    std::uint32_t value = 0;
    for (unsigned i = 0; i < sizeof value; ++i) value |= std::to_integer<std::uint32_t>(at[i]) << (i * kBitsOfByte);
    return value;
}

bool HasTag(const std::byte* at, std::string_view tag) {
    return std::memcmp(at, tag.data(), tag.size()) == 0;
}

// RIFF files are a header of 12 bytes ("RIFF", size, "WAVE") and chunks (name, size, content padded to an even length):
// "Multimedia Programming Interface and Data Specifications 1.0", IBM and Microsoft, 1991. The chunk "fmt " begins with
// the kind of the samples; those of the kinds that are plain numbers are as many as the chunk "data" has room for.
constexpr std::int64_t kRiffHeaderBytes = 12;
constexpr std::size_t kFormTypeAt = 8;
constexpr std::size_t kRiffChunkHeaderBytes = 8;
constexpr std::size_t kChunkSizeAt = 4;
constexpr std::size_t kSampleKindBytes = 2;
constexpr std::byte kIntegerSamples{1};
constexpr std::byte kFloatSamples{3};

Framing ExamineWavFraming(ByteSource& source) {
    std::int64_t offset = kRiffHeaderBytes;
    std::array<std::byte, kRiffChunkHeaderBytes> header;
    bool hasPlainSamples = false;
    while (source.ReadAt(offset, header) == header.size()) {
        const std::int64_t size = LittleEndian32(&header[kChunkSizeAt]);
        offset += static_cast<std::int64_t>(header.size());
        std::array<std::byte, kSampleKindBytes> kind{};
        if (HasTag(header.data(), "fmt ") && source.ReadAt(offset, kind) == kind.size()) {
            hasPlainSamples = (kind[0] == kIntegerSamples || kind[0] == kFloatSamples) && kind[1] == std::byte{0};
        }
        offset += size;
        if (HasTag(header.data(), "data")) {
            if (offset > source.Size()) return {"its end is missing"};
            return {"", hasPlainSamples};
        }
        offset += size % 2;
    }
    return {"it has no sound data"};
}

}  // namespace

Framing ExamineFraming(ByteSource& source) {
    std::array<std::byte, kRiffHeaderBytes> start;
    if (source.Size() == 0) return {"it is empty"};
    if (source.ReadAt(0, start) == start.size()) {
        if (HasTag(start.data(), "RIFF") && HasTag(&start[kFormTypeAt], "WAVE")) return ExamineWavFraming(source);
        if (HasTag(start.data(), "OggS")) return ExamineOggFraming(source);
    }
    return {"it is neither WAV nor Ogg Vorbis"};
}

}  // namespace host
