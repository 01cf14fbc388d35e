#include "runtime/soundfile/FlacWriter.h"

#include <sndfile.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace host {

namespace {

// RFC 9639: the signature, a block header of 4 bytes and the STREAMINFO block. Its bytes 10 to 17 are the rate (20
// bits), channels (3), bits of a sample (5) and the number of all frames (36; 0 where it is not known), the highest bit
// first.
constexpr std::uint64_t kFrameCountAt = 4 + 4 + 10 + 3;
constexpr std::size_t kFrameCountBytes = 5;
constexpr unsigned kBitsOfByte = 8;
// Above the lowest 36 bits the first of those bytes has the last four bits of the sample's, less one: 15.
constexpr std::uint64_t kSampleBits = std::uint64_t{15} << 36U;
constexpr std::int64_t kBlockFrames = 4096;

}  // namespace

// The library's view of an OutputFile, and what it has encoded.
struct FlacWriter::Encoder {
    static SF_VIRTUAL_IO VirtualIo() {
        SF_VIRTUAL_IO io{};
        io.get_filelen = [](void* user) -> sf_count_t { return static_cast<Encoder*>(user)->size; };
        io.seek = [](sf_count_t offset, int whence, void* user) -> sf_count_t {
            auto& encoder = *static_cast<Encoder*>(user);
            const sf_count_t base = whence == SEEK_CUR   ? encoder.position
                                    : whence == SEEK_END ? encoder.size
                                                         : sf_count_t{0};
            encoder.position = base + offset;
            return encoder.position;
        };
        io.write = [](const void* from, sf_count_t count, void* user) -> sf_count_t {
            const std::span bytes(static_cast<const std::byte*>(from), static_cast<std::size_t>(count));
            return static_cast<Encoder*>(user)->Put(bytes) ? count : 0;
        };
        io.tell = [](void* user) -> sf_count_t { return static_cast<Encoder*>(user)->position; };
        return io;
    }

    bool Put(std::span<const std::byte> bytes) {
        const std::size_t inside = std::min(bytes.size(), static_cast<std::size_t>(size - position));
        const bool isPut =
            (inside == 0 || output->Overwrite(static_cast<std::uint64_t>(position), bytes.first(inside))) &&
            (inside == bytes.size() || output->Append(bytes.subspan(inside)));
        if (!isPut) {
            isFull = true;
            return false;
        }
        position += static_cast<sf_count_t>(bytes.size());
        size = std::max(size, position);
        return true;
    }

    bool TellFrames(std::int64_t count) {
        const std::uint64_t value = kSampleBits | static_cast<std::uint64_t>(count);
        std::array<std::byte, kFrameCountBytes> bytes{};
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            constexpr std::uint64_t kByte = 0xFF;
            const auto shift = static_cast<unsigned>(bytes.size() - 1 - i) * kBitsOfByte;
            bytes[i] = static_cast<std::byte>((value >> shift) & kByte);
        }
        return output->Overwrite(kFrameCountAt, bytes);
    }

    std::unique_ptr<OutputFile> output;
    sf_count_t position = 0;
    sf_count_t size = 0;
    std::int64_t frames = 0;  ///< given to the encoder
    SNDFILE* file = nullptr;
    bool isFull = false;
};

FlacWriter::FlacWriter(std::unique_ptr<OutputFile> file, int rate) : encoder_(std::make_unique<Encoder>()) {
    encoder_->output = std::move(file);
    SF_INFO info{};
    info.samplerate = rate;
    info.channels = 1;
    info.format = SF_FORMAT_FLAC | SF_FORMAT_PCM_16;
    SF_VIRTUAL_IO io = Encoder::VirtualIo();
    encoder_->file = sf_open_virtual(&io, SFM_WRITE, &info, encoder_.get());
    encoder_->isFull |= encoder_->file == nullptr;
}

FlacWriter::~FlacWriter() {
    if (encoder_->file != nullptr) sf_close(encoder_->file);
}

bool FlacWriter::Write(std::span<const float> frames) {
    if (encoder_->isFull) return false;
    constexpr float kFullScale = 32767;
    std::vector<short> samples(frames.size());
    std::transform(frames.begin(), frames.end(), samples.begin(), [](float frame) {
        return static_cast<short>(std::lrint(std::clamp(frame, -1.0F, 1.0F) * kFullScale));
    });
    const auto count = static_cast<sf_count_t>(samples.size());
    const bool isWritten = sf_writef_short(encoder_->file, samples.data(), count) == count;
    encoder_->frames += count;
    // A block is written when the next frame after it is there.
    const std::int64_t blocks = std::max<std::int64_t>(encoder_->frames - 1, 0) / kBlockFrames;
    encoder_->isFull |= !isWritten || (blocks > 0 && !encoder_->TellFrames(blocks * kBlockFrames));
    return !encoder_->isFull;
}

bool FlacWriter::Close() {
    if (encoder_->file != nullptr) sf_close(std::exchange(encoder_->file, nullptr));
    return encoder_->output->Close() && !encoder_->isFull;
}

std::string FlacWriter::Problem() const {
    return encoder_->output->Problem().empty() ? "it cannot be encoded" : encoder_->output->Problem();
}

}  // namespace host
